#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "fileio.h"
#include "fileio_test_cell.h"

namespace {

struct Op {
    double R[3][3] = {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}};
    double t[3] = {0, 0, 0};
};

Op parse(const std::string& text)
{
    FileIO f;
    Op op;
    f.ParseTransformString(text, op.R, op.t);
    return op;
}

void load_atoms(FileIO& f, const std::vector<double>& xs, std::vector<std::string> ops)
{
    load_test_cell(f, xs, 0.77);
    f.symm_ops = ops;
}

}  // namespace

TEST(SymmetryParse, SymbolicAndNumericForms)
{
    const struct {
        const char* text;
        std::vector<double> rows, t;
    } cases[] = {
        {"-x+1/2,y+1/2,-z+1/2", {-1, 0, 0, 0, 1, 0, 0, 0, -1}, {0.5, 0.5, 0.5}},
        {"x,y-1/4,z", {1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 0.75, 0}},  // wrapped once
        {"x+0.5,y,z", {1, 0, 0, 0, 1, 0, 0, 0, 1}, {0.5, 0, 0}},
        {"x-1,y,z", {1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 0, 0}},
        {" 'X', -Y _ ,\tZ+3/4 ", {1, 0, 0, 0, -1, 0, 0, 0, 1}, {0, 0, 0.75}},
        {"1/2+x,-1/3-y,z", {1, 0, 0, 0, -1, 0, 0, 0, 1}, {0.5, 2.0 / 3.0, 0}},
        {"x-y,x,z+5/6", {1, -1, 0, 1, 0, 0, 0, 0, 1}, {0, 0, 5.0 / 6.0}},
        {"x,y,z+0.25", {1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 0, 0.25}},  // a leading 0 is no fraction
        {"y,x", {0, 1, 0, 1, 0, 0, 0, 0, 0}, {0, 0, 0}},            // third row stays zero
        {"1 0 0 0.5 0 1 0 0 0 0 1 0", {1, 0, 0, 0, 1, 0, 0, 0, 1}, {0.5, 0, 0}},
        {"0 -1 0 0 1 0 0 0.25 0 0 -1 -0.5", {0, -1, 0, 1, 0, 0, 0, 0, -1}, {0, 0.25, 0.5}},
        {"0 1 0 0 1", {0, 1, 0, 1, 0, 0, 0, 0, 0}, {0, 0, 0}},  // only what is there
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        Op op = parse(c.text);
        for (int r = 0; r < 3; r++)
            for (int k = 0; k < 3; k++) EXPECT_DOUBLE_EQ(op.R[r][k], c.rows[3 * r + k]) << r << k;
        for (int k = 0; k < 3; k++) EXPECT_NEAR(op.t[k], c.t[k], 1e-15) << k;
    }
    Op op;  // no comma and no blank: nothing is parsed, the caller's values stay
    op.R[0][0] = 7;
    FileIO().ParseTransformString("xyz", op.R, op.t);
    EXPECT_EQ(op.R[0][0], 7);
}

TEST(SymmetryExpand, OverlapsImageOrderAndNoOperators)
{
    FileIO f;
    load_atoms(f, {0, 0, 0, 0.1, 0.2, 0.3}, {"x,y,z", "-x,-y,-z"});
    testing::internal::CaptureStdout();
    f.make_spacegroup_P1(3);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "WARNING: Overlapped atoms detected and to be removed\n"
              "         Number of overlapped atoms is 1\n"
              "         Number of remaining atoms is 3\n");
    ASSERT_EQ(f.natoms_cif, 3);
    // Image order: operator by operator; image 2 (origin again) is gone.
    const double kept[9] = {0, 0, 0, 0.1, 0.2, 0.3, 0.9, 0.8, 0.7};
    for (int k = 0; k < 9; k++) EXPECT_NEAR(f.cif_x_s[k], kept[k], 1e-15) << k;
    EXPECT_EQ(f.cif_atypes[2], 6);
    EXPECT_DOUBLE_EQ(f.cif_radius[2], 0.77);

    // Across the face with the minimum image the first image survives; just
    // outside the limit (1.1e-3 apart in x alone) both stay.
    load_atoms(f, {0.9999999, 0.5, 0.5, 0.0000001, 0.5, 0.5, 0.5, 0.5, 0.5, 0.2, 0.5, 0.5, 0.2011, 0.5, 0.5}, {"x,y,z"});
    testing::internal::CaptureStdout();
    f.make_spacegroup_P1(3);
    EXPECT_NE(testing::internal::GetCapturedStdout().find("Number of overlapped atoms is 1\n"), std::string::npos);
    ASSERT_EQ(f.natoms_cif, 4);
    EXPECT_EQ(std::vector<double>({f.cif_x_s[0], f.cif_x_s[3], f.cif_x_s[6], f.cif_x_s[9]}),
              (std::vector<double>{0.9999999, 0.5, 0.2, 0.2011}));
    load_atoms(f, {0.1, 0.2, 0.3}, {});
    f.make_spacegroup_P1(3);
    EXPECT_EQ(f.natoms_cif, 0);
}

// The binned overlap scan must flag exactly what the plain pairwise scan
// flags: many near-coincident images, images on the faces and positions
// left outside [0, 1) by the single wrap.
TEST(SymmetryExpand, SameSurvivorsAsPairwiseScan)
{
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> grid(0, 7);
    std::uniform_real_distribution<double> jitter(-6e-4, 6e-4);
    std::vector<double> xs;
    for (int i = 0; i < 300; i++)
        for (int k = 0; k < 3; k++) xs.push_back(grid(rng) / 8.0 + (i % 3 ? jitter(rng) : 0.0));
    std::vector<std::string> ops = {"x,y,z", "-x,-y,-z", "-x+1/2,y+1/2,-z+1/2",
                                    "x+1/2,-y+1/2,z+1/2", "2 0 0 0 0 1 0 0 0 0 1 -1.5"};
    FileIO f;
    load_atoms(f, xs, ops);
    int n = (int)xs.size() / 3;

    std::vector<double> expect = plain_p1_cell(ops, xs);

    testing::internal::CaptureStdout();
    f.make_spacegroup_P1(3);
    testing::internal::GetCapturedStdout();
    ASSERT_EQ(f.natoms_cif * 3, (int)expect.size());
    ASSERT_LT(f.natoms_cif, n * (int)ops.size());
    for (size_t k = 0; k < expect.size(); k++) ASSERT_EQ(f.cif_x_s[k], expect[k]) << k;
}
