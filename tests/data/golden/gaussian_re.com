%mem=4000MB
%nprocs=16
%chk=mol_1_c.chk
#P opt freq b3lyp/6-31g* pop=full nosymm
scf=(maxcycle=100,xqc)

cation

1 2
C     0.0000    1.5000  -12.3457
H    10.2500   -0.5000    2.0000
Cl    3.1416    2.7183   -1.0000

