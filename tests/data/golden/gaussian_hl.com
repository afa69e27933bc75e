%chk=dimer_1.chk
%mem=2000MB
%nprocs=8
#P b3lyp/6-31g* iop(3/33=1,5/33=2) pop=full nosymm

pair 1

0 1
C     0.0000    1.5000  -12.3457
H    10.2500   -0.5000    2.0000
Cl    3.1416    2.7183   -1.0000

--Link1--
no final line end