// The hop-rate files (units, echo, every way they can be wrong), charge.inp
// and temp.inp.

#include <gtest/gtest.h>

#include "test_support.h"
#include "transport.h"

// A workspace whose molecules have the given neighbour counts.
static void set_counts(Transport& t, std::vector<int> counts)
{
    t.nmols = t.neighbor_nmols = (int)counts.size();
    t.nnei = new int[counts.size()];
    for (size_t i = 0; i < counts.size(); i++) t.nnei[i] = counts[i];
    t.neighbor_list_built = true;
}

TEST(MonteCarloInputs, RatesUnitsAndEcho)
{
    ScratchDir dir;
    Transport t;
    set_counts(t, {2, 0});
    t.mc_chargetype = "Hole";
    put_file("WH01.dat", "1.0 eV 2.5e12 1/s 3.9 A\n1 eV 7 1/ps 1 A\n");
    put_file("WH02.dat", "");
    t.read_MC_w0();
    t.write_MC_w0_out();
    EXPECT_EQ(read_text_file("w0_01.out"), "2\n   2.500000e+03 1/ns\n   7.000000e-09 1/ns\n");
    EXPECT_EQ(read_text_file("w0_02.out"), "0\n");
    put_file("WH01.dat", "1 eV 2 \t 1/PS 3 A\n1 eV 3 1/s 1 A\n");
    t.read_MC_w0();
    EXPECT_EQ(t.w0[0][1], 3000.0);

    struct Bad { std::string type, text; int status; std::string message; } cases[] = {
        {"x", "", 0, "INFO: MC chargetype = x\n\nERROR  transport : transport : line 3082 : \nCHARGETYPE IS NOT SET CORRECTLY!"},
        {"e", "", 255, "line 3090 : \nFailed to open input file WL01.dat"},
        {"h", "1 eV 2 1/s 3 A\r\n1 eV 2 1/s 3 A\r\n", 255,
         "line 3104 : \nUnmatched data in 'WH01.dat' - 4 lines in file, but 2 \\(nnei\\) lines are expected!\n"
         "Try to adjust the cutoff distance to make it agree."},
        {"h", "1 eV 2 1/s 3 A\n1 eV 2 1/s 3 A", 255, "Unmatched data in 'WH01.dat' - 1 lines"},
        {"h", "1 eV 2 1/s 3 A\n1 eV -2 1/s 3 A\n", 255, "line 3108 : \nThe hop rate -2 in line 2 of 'WH01.dat'"},
        {"h", "1 eV 2 1/s 3 A\n1 eV abc 1/s 3 A\n", 255, "line 3106 : \nLine 2 of 'WH01.dat' is not three"},
    };
    for (const Bad& c : cases) {
        t.mc_chargetype = c.type;
        EXPECT_EXIT((child_with_file("WH01.dat", c.text), t.read_MC_w0()), testing::ExitedWithCode(c.status),
                    c.message);
    }
}

TEST(MonteCarloInputs, ChargeAndTemperatureFiles)
{
    ScratchDir dir;
    Transport t;
    testing::internal::CaptureStdout();
    EXPECT_EQ(t.read_temp_inp(), -1000.0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    put_file("temp.inp", "299 K\n");
    put_file("charge.inp", "  hole\n");
    testing::internal::CaptureStdout();
    EXPECT_EQ(t.read_temp_inp(), 299.0);
    t.read_charge_inp();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Reading input file temp.inp ...\nReading input file charge.inp ...\n");
    EXPECT_EQ(t.mc_chargetype, "h");
    remove("charge.inp");
    EXPECT_EXIT(t.read_charge_inp(), testing::ExitedWithCode(255), "^Failed to open input file charge.inp\n$");
}
