// The same job as the structure pipeline, written with gemmi's public C++
// API the way its documentation suggests: its CIF parser and small-structure
// model, its unit-cell expansion with special-position merging, and its
// cell-linked neighbour search.

#include "peer_gemmi.h"

#include <gemmi/cif.hpp>
#include <gemmi/elem.hpp>
#include <gemmi/neighbor.hpp>
#include <gemmi/smcif.hpp>
#include <gemmi/symmetry.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

// The operators the file lists (gemmi would otherwise take them from the
// space-group name, which some of the files do not give in a form it knows).
void listed_operators(gemmi::cif::Block& block, gemmi::UnitCell& cell)
{
    cell.images.clear();
    for (const char* tag : {"_symmetry_equiv_pos_as_xyz", "_space_group_symop_operation_xyz"}) {
        gemmi::cif::Column col = block.find_values(tag);
        if (col.length() == 0) continue;
        for (const std::string& item : col) {
            gemmi::Op op = gemmi::parse_triplet(gemmi::cif::as_string(item));
            if (op == gemmi::Op::identity()) continue;
            cell.images.emplace_back(
                gemmi::Transform{gemmi::rot_as_mat33(op), gemmi::tran_as_vec3(op)});
        }
        return;
    }
}

}  // namespace

size_t gemmi_whole_molecules(const char* path, double scale, size_t* natoms)
{
    gemmi::cif::Document doc = gemmi::cif::read_file(path);
    gemmi::cif::Block& block = doc.blocks.at(0);
    gemmi::SmallStructure st = gemmi::make_small_structure_from_block(block);
    listed_operators(block, st.cell);

    std::vector<gemmi::SmallStructure::Site> cell_sites = st.get_all_unit_cell_sites();
    for (auto& site : cell_sites) site.fract = site.fract.wrap_to_unit();
    st.sites = std::move(cell_sites);
    st.cell.images.clear();
    const size_t n = st.sites.size();
    *natoms = n;

    std::vector<float> radius(n);
    float rmax = 0.f;
    for (size_t i = 0; i < n; i++) {
        radius[i] = st.sites[i].element.covalent_r();
        rmax = std::max(rmax, radius[i]);
    }
    gemmi::NeighborSearch ns(st, 2.0 * rmax * scale);
    ns.populate();

    // Breadth-first over the bonds; each atom is placed at the image
    // nearest to the atom it was reached from.
    std::vector<int> molecule(n, -1);
    std::vector<gemmi::Fractional> whole(n);
    std::vector<size_t> queue;
    size_t nmols = 0;
    for (size_t first = 0; first < n; first++) {
        if (molecule[first] >= 0) continue;
        queue.assign(1, first);
        molecule[first] = (int)nmols;
        whole[first] = st.sites[first].fract;
        for (size_t q = 0; q < queue.size(); q++) {
            size_t a = queue[q];
            gemmi::Position pos = st.cell.orthogonalize(st.sites[a].fract);
            float limit = (float)(2.0 * rmax * scale);
            ns.for_each(pos, '\0', limit, [&](gemmi::NeighborSearch::Mark& m, float dist_sq) {
                size_t b = (size_t)m.atom_idx;
                float bond = (radius[a] + radius[b]) * (float)scale;
                if (molecule[b] >= 0 || dist_sq >= bond * bond) return;
                molecule[b] = (int)nmols;
                gemmi::Fractional d = st.sites[b].fract - st.sites[a].fract;
                d = d.wrap_to_zero();
                whole[b] = gemmi::Fractional(whole[a] + d);
                queue.push_back(b);
            });
        }
        // centre of mass into the cell
        gemmi::Vec3 c;
        double mass = 0.0;
        for (size_t a : queue) {
            double w = st.sites[a].element.weight();
            c += whole[a] * w;
            mass += w;
        }
        if (mass > 0.0) {
            gemmi::Fractional shift(-std::floor(c.x / mass), -std::floor(c.y / mass),
                                    -std::floor(c.z / mass));
            for (size_t a : queue) whole[a] += shift;
        }
        nmols++;
    }
    return nmols;
}
