// The neighbour list as text: the table of neighbor.dat (also printed to a
// stream), one CIF per molecule with its neighbours around it, and the
// diagnostic listing by minimum atom distance.

#include <cmath>
#include <cstdlib>
#include <vector>

#include "mmutil.h"
#include "neighbor_internal.h"
#include "transport.h"

namespace {

// The table of neighbor.dat: the molecule count, then per molecule a root
// line, a count line and one line per neighbour.
std::string neighbor_table(Transport& t)
{
    std::string s = format_string("%d\n", t.nmols);
    for (int i = 0; i < t.nmols; i++) {
        const double* c = t.x_com + 3 * i;
        s += format_string("%d %8.4f %8.4f %8.4f  # root\n", i + 1, c[0], c[1], c[2]);
        s += format_string("%2d #    dx        dy        dz         r     cindex\n", t.nnei[i]);
        for (int k = 0; k < t.nnei[i]; k++) {
            const int j = t.nei_mol[i][k];
            int cell[3];
            double f[3], d[3];
            neighbor_cell(t, i, k, cell);
            for (int a = 0; a < 3; a++) f[a] = t.x_s_com[3 * j + a] - t.x_s_com[3 * i + a] + cell[a];
            mat_vec_mul(t.latt3x3, f, d);
            s += format_string(" %d  %8.4f  %8.4f  %8.4f  %8.4f  %2d %2d %2d\n", j + 1, d[0], d[1],
                               d[2], std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]), cell[0],
                               cell[1], cell[2]);
        }
    }
    return s;
}

// write_cif_mol_one writes into a stream; this one collects into a string.
class MemoryStream {
public:
    MemoryStream() : f_(open_memstream(&buf_, &len_)) {}
    ~MemoryStream()
    {
        if (f_) fclose(f_);
        free(buf_);
    }
    MemoryStream(const MemoryStream&) = delete;
    MemoryStream& operator=(const MemoryStream&) = delete;
    FILE* file() { return f_; }
    std::string text()
    {
        fflush(f_);
        return std::string(buf_, len_);
    }

private:
    char* buf_ = nullptr;
    size_t len_ = 0;
    FILE* f_;
};

std::string neighbor_cif_header(Transport& t)
{
    const double* cell = t.get_cell_latt();
    std::string s = format_string("data_%s\n", t.get_identifier());
    s += "_audit_creation_date              2018-09-12\n";
    s += format_string("_audit_creation_method            '%s'\n", "VESKA");
    s += "_symmetry_space_group_name_H-M    'P1'\n"
         "_symmetry_Int_Tables_number       1\n"
         "_symmetry_cell_setting            triclinic\n"
         "loop_\n"
         "_symmetry_equiv_pos_as_xyz\n"
         "  x,y,z\n";
    s += format_string("_cell_length_a                    %.4f\n", cell[0] * 3);
    s += format_string("_cell_length_b                    %.4f\n", cell[1] * 3);
    s += format_string("_cell_length_c                    %.4f\n", cell[2] * 3);
    s += format_string("_cell_angle_alpha                 %.4f\n", cell[3]);
    s += format_string("_cell_angle_beta                  %.4f\n", cell[4]);
    s += format_string("_cell_angle_gamma                 %.4f\n", cell[5]);
    s += "loop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n"
         "_atom_site_fract_y\n_atom_site_fract_z\n_atom_site_U_iso_or_equiv\n"
         "_atom_site_disorder_group\n";
    return s;
}

// Molecule i in the centre cell of a block three cells wide (group 0), its
// neighbours around it in list order (groups 1, 2, ...).
std::string neighbor_cif(Transport& t, int i, const std::string& path)
{
    MemoryStream mem;
    if (!mem.file())
        veska_fatal("transport", 2942, -1, stderr, "Out of memory for %s\n", path.c_str());
    int written = 0;  // atoms so far: the labels run on across molecules
    for (int k = -1; k < t.nnei[i]; k++) {
        const int j = k < 0 ? i : t.nei_mol[i][k];
        double shift[3];
        for (int d = 0; d < 3; d++) shift[d] = k < 0 ? 0 : t.nei_cell[d][i][k];
        t.write_cif_mol_one(mem.file(), written, t.natoms_mol[j], t.atypes_mol[j], t.x_s_mol[j],
                            shift, 3.0, k + 1);
        written += t.natoms_mol[j];
    }
    return neighbor_cif_header(t) + mem.text() + "\n";
}

}  // namespace

void write_output_file(const std::string& path, const std::string& text, int line, bool quoted)
{
    const char* q = quoted ? "\"" : "";
    switch (write_text_file(path.c_str(), text)) {
    case WRITE_OK:
        return;
    case WRITE_OPEN_FAILED:
        veska_fatal("transport", line, -1, stderr, "Failed to open output file %s%s%s\n", q,
                    path.c_str(), q);
    default:
        veska_fatal("transport", line, -1, stderr, "Failed to write output file %s%s%s\n", q,
                    path.c_str(), q);
    }
}

void Transport::output_neighbor_info(FILE* f)
{
    require_neighbor_list(*this, "output_neighbor_info");
    if (!f) return;
    std::string s = "**** Molecular Neighbor Information\n"
                    "# nroot, {root_mol_info, nnei, neighbors_info}\n";
    s += neighbor_table(*this);
    s += "**** End of Molecular Neighbor Information\n\n";
    fputs(s.c_str(), f);
}

void Transport::output_neighbor_data()
{
    require_neighbor_list(*this, "output_neighbor_data");
    create_directory(data_dir.c_str());
    write_output_file(data_dir + "/neighbor.dat",
                      "# nroot, root_mol_info, nnei, neighbors_info\n"
                      "# r = molecular COM distance, cindex = neighbor cell index\n" +
                          neighbor_table(*this),
                      2818, true);
    for (int i = 0; i < nmols; i++) {
        const std::string path = data_dir + "/mol" + std::to_string(i + 1) + "_neighbors.cif";
        write_output_file(path, neighbor_cif(*this, i, path), 2943, true);
    }
}

void Transport::find_neighbor_molecules_min_distance(bool)
{
    const int* n = nei_scell;
    const bool empty = search_range_empty(n);
    const size_t cap =
        empty || nmols < 1 ? 0 : (size_t)(2 * n[0] + 1) * (2 * n[1] + 1) * (2 * n[2] + 1) * nmols;
    std::vector<int> mol(cap), cells(3 * cap), index(cap);
    std::vector<double> dist(cap);
    printf("\n**** Calculate minimum atomic distance with neighbors ****\n");
    for (int i = 0; i < nmols; i++) {
        int c = 0, cell[3] = {-n[0], -n[1], -n[2]};
        if (!empty) do {
            for (int j = 0; j < nmols; j++) {
                if (is_home_cell_of(i, j, cell)) continue;
                const double r = found_two_molecules_min_distance(i, j, cell);
                if (!(r < lat_cutoff)) continue;
                mol[c] = j;
                for (int d = 0; d < 3; d++) cells[3 * c + d] = cell[d];
                dist[c] = r;
                index[c] = c;
                c++;
            }
        } while (next_search_cell(n, cell));
        quickSort_d(dist.data(), index.data(), c);
        printf("  molecule %d:\n", i + 1);
        for (int k = 0; k < c; k++) {
            const int m = index[k];
            printf("    neighbor %d [%2d %2d %2d]: %8.3f\n", mol[m] + 1, cells[3 * m],
                   cells[3 * m + 1], cells[3 * m + 2], dist[m]);
        }
    }
    printf("**** End of Calculate minimum atomic distance with neighbors ****\n");
}
