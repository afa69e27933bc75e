#ifndef VESKA_TEST_VESKA_INP_GOLDEN_H
#define VESKA_TEST_VESKA_INP_GOLDEN_H

// The configuration layouts in their default state (defaults, engine 1, no
// environment, no module flag), typed from the layout tables. Tests derive
// the variants with line edits.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "test_support.h"

// Pieces that several layouts share, each ending with its line feed.
inline const std::string golden_qc_method = R"(  qc_method       = b3lyp
  qc_basis        = b3lyp STO-3g
  qc_basis_re     = b3lyp STO-3g
  qc_memory       = 4096  ! MB
  qc_nodes        = 1
  qc_ppn          = 8
)";
inline const std::string golden_temp_scan = R"(  # Temperature Dependence
  start_temp      = 200
  end_temp        = 300
  delta_temp      = 50

)";
inline const std::string golden_neighbours = R"(  lat_cutoff      = 4      ! for neighbor list construction
  nei_scell       = 3 3 3  ! -/+ this value for neighbor cell search

  super_cell      = 5 5 5

)";
inline const std::string golden_me_and_adjustments = R"(  # ME
  iterlimit       = 100
  nevery_out      = 10

  bond_dis_scale  = 1.15  ! for separating molecules

  homo_adjustment =
  lumo_adjustment =
)";
// The lattice-vector lines of MOL input in veska.inp, with their empty line.
inline const std::string golden_vector_lines = R"(  vector_a        =     8.098000     0.000000     0.000000
  vector_b        =     0.000000     5.953000     0.000000
  vector_c        =    -4.888095     0.000000     7.138882

)";

// Lines 1 to 19 of every veska.inp layout.
inline const std::string golden_block_start = R"(&transport
  do_transport_prepare              = 1
  do_transport_submit_HL_job        = 1
  do_transport_get_transferintegral = 1
  do_transport_submit_RE_job        = 1
  do_transport_get_re_evc           = 1
  do_transport_run_MC               = 1
  do_transport_get_mob_MC           = 1
  do_transport_run_MC_temp          = 0
  do_transport_get_mob_MC_temp      = 0
  do_transport_run_ME               = 0
  do_transport_get_mob_ME           = 0
  do_transport_run_ME_temp          = 0
  do_transport_get_mob_ME_temp      = 0
  do_transport_gather_veska_data    = 1

  # Job Scheduling
  sched_type      = pbs    ! pbs, slurm, lsf, or local
  queue_name      = workq
)";

// Lines 20 to 39 of the terse and the verbose layouts.
inline const std::string golden_starting_middle = R"(
  compute_engine  = 1      ! 1 = Gaussian, 2 = ORCA, 3 = QCHEM
  qc_exe          = g09    ! g09/g16 or fullpath/orca or qchem

#  module_qc = gaussian/g09.e01

)" + golden_qc_method + R"(
  temp            = 300

)" + golden_temp_scan;

// Terse veska.inp, input kind 2, no CIF file in the directory.
inline const std::string golden_terse = golden_block_start + golden_starting_middle + R"(  ratetype        = quanta  ! macus or quanta

  lat_cutoff      = 4       ! for neighbor list construction

  nsimu           = 2000
  tsimu           = 1000    ! in ns
  tsnap           = 5

  crystal         = naphthalene.cif
/
)";

// Verbose veska.inp, input kind 2, no CIF file, empty adjustment lists, nmols 0.
inline const std::string golden_verbose = golden_block_start + golden_starting_middle + R"(  chargetype      = a     ! e:electron, h:hole or a:all
  evc_type        = cart  ! cart or int

)" + golden_neighbours + R"(  delta_angle     = 10

  # Femi Golden Rule
  temp            = 300
  maxt            = 10000
  ratetype        = quanta  ! macus or quanta
  sta             = 1       ! short-time approximation

  lat_site_energy = 0  ! if calculate site energy

  output_level    = 2          ! bit-wise setting: 0-base, 2-mob_all

  eckart_mirror   = 0

  # MC
  nsimu           = 2000
  tsimu           = 1000    ! in ns
  tsnap           = 5

)" + golden_me_and_adjustments + R"(  # unique mol flags
  HL_unique_mol   = 1
  RE_unique_mol   = 1

  crystal         = naphthalene.cif
/
)";

// Old config.inp, input kind 2, no CIF file, no module flag.
inline const std::string golden_old = R"(# parameters in simulation
# Job Scheduling
queue_type      pbs    ! pbs, slurm, lsf, or local
queue_name      workq

# g09/g16 or orca
qc_exe          g09

qc_method       b3lyp
qc_basis        b3lyp STO-3g
qc_basis_re     b3lyp STO-3g
qc_memory       4096  ! MB
qc_nodes        1
qc_ppn          8

temp            300

# Temperature Dependence
start_temp      200
end_temp        300
delta_temp      50

chargetype      a  ! e:electron, h:hole or a:all
evc_type        cart  ! cart or int

vector_a            8.098000     0.000000     0.000000
vector_b            0.000000     5.953000     0.000000
vector_c           -4.888095     0.000000     7.138882

lat_cutoff      4  ! for neighbor list construction

delta_angle     10

# Femi Golden Rule
temp            300
maxt            10000
ratetype        quanta  ! macus or quanta
sta             1  ! short-time approximation

# MC
nsimu           2000
tsimu           1000  ! in ns
tsnap           5

# ME
super_cell      5 5 5
iterlimit       100
nevery_out      10
crystal         naphthalene.cif

)";

// Full-state veska.inp after the defaults on a fresh Transport: no module
// flag, empty nodelist, array jobs on, empty veska_dat_file, input kind -1.
inline const std::string golden_full = golden_block_start + R"(  nodelist        = ""
  sched_job_array = 1

)" + golden_qc_method + R"(
  compute_engine  = 1     ! 1 = Gaussian, 2 = ORCA, 3 = QCHEM
  qc_exe          = g09

  scratch         = /tmp    ! use local disk for performance

)" + golden_temp_scan + R"(  chargetype      = a  ! e:electron, h:hole or a:all
  evc_type        = cart  ! cart or int

)" + golden_vector_lines + golden_neighbours + R"(  lat_site_energy = 0  ! if calculate lattice site energy

  veska_dat_file  =   ! default to veska-ratetype.dat
  output_level    = 2          ! bit-wise setting: 0-base, 2-mob_all

  eckart_mirror   = 0

  delta_angle     = 10

  # Femi Golden Rule
  temp            = 300
  maxt            = 10000
  ratetype        = quanta  ! macus or quanta
  sta             = 1  ! short-time approximation

  # MC
  nsimu           = 2000
  tsimu           = 1000  ! in ns
  tsnap           = 5

)" + golden_me_and_adjustments + R"(
  # unique mol flags
  HL_unique_mol   = 1
  RE_unique_mol   = 1

/
)";

inline const char* const terse_lat_cutoff =
    "  lat_cutoff      = 4       ! for neighbor list construction";
inline const char* const verbose_lat_cutoff =
    "  lat_cutoff      = 4      ! for neighbor list construction";
inline const char* const module_off = "#  module_qc = gaussian/g09.e01";
inline const char* const crystal_default = "  crystal         = naphthalene.cif";
inline const char* const old_crystal_default = "crystal         naphthalene.cif";
inline const char* const mol_default = "  molecule        = 2 mol1.mol mol2.mol\n";

// Replaces each whole line `first` (given without its line feed, found
// exactly once) by the lines `second` (each with its line feed).
inline std::string edit(std::string text, const std::vector<std::pair<std::string, std::string>>& edits)
{
    for (const auto& e : edits) {
        size_t at = text.find("\n" + e.first + "\n");
        EXPECT_NE(at, std::string::npos) << "golden line not found: " << e.first;
        EXPECT_EQ(text.find("\n" + e.first + "\n", at + 1), std::string::npos) << e.first;
        if (at != std::string::npos) text.replace(at + 1, e.first.size() + 1, e.second);
    }
    return text;
}

inline std::string insert_before(const std::string& text, const std::string& line,
                                 const std::string& lines)
{
    return edit(text, {{line, lines + line + "\n"}});
}

#endif
