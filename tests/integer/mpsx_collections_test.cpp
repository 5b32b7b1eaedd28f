// The Netlib LP and MIPLIB models of the shared test data (fixed columns, CR LF line ends): their
// sizes as the collections publish them, and, with GLPK installed, the same data as GLPK's MPS reader.
#include <gtest/gtest.h>

#include <cfloat>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "frame/input_units.h"
#include "mpsx_test_support.h"
#include "zek2/x04.h"

#if defined(ZEK_HAVE_GLPK)
#include <glpk.h>
#endif

namespace {

using zek_test::MpsxRead;

struct Model {
    std::string collection, name;
    int rows_with_objective = 0, columns = 0, count = 0;  // count: nonzeros (LP) or integer columns (MIP)
};

std::vector<Model> models(const std::string &collection) {
    std::vector<Model> out;
    std::ifstream tsv(std::string(ZEK_SHARED_DATA_DIR) + "/" + collection + "/optima.tsv");
    std::string line;
    while (std::getline(tsv, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        Model m;
        std::string optimum;
        m.collection = collection;
        fields >> m.name >> optimum >> m.rows_with_objective >> m.columns >> m.count;
        out.push_back(m);
    }
    return out;
}

std::string path_of(const Model &m) { return std::string(ZEK_SHARED_DATA_DIR) + "/" + m.collection + "/" + m.name + ".mps"; }

// Reads a model through a unit, as a host does.
void read_model(const Model &m, MpsxRead &r) {
    std::FILE *stream = X04_OPEN_INPUT(path_of(m).c_str());
    EXPECT_EQ(r.read(zek::input_unit_number(stream), 1), 0) << m.name;
    zek::forget_input_stream(stream);
    std::fclose(stream);
}

TEST(Collections, EveryModelReadsWithItsPublishedSizes) {
    std::vector<Model> all = models("lp");
    const std::vector<Model> mip = models("mip");
    all.insert(all.end(), mip.begin(), mip.end());
    ASSERT_EQ(all.size(), 12u);
    for (const Model &m : all) {
        MpsxRead r(m.rows_with_objective, m.columns);
        read_model(m, r);
        EXPECT_EQ(r.m + 1, m.rows_with_objective) << m.name;
        EXPECT_EQ(r.n, m.columns) << m.name;
        if (m.collection == "lp") {
            EXPECT_EQ(r.nonzeros(), m.count) << m.name;
        } else {
            int integers = 0;
            for (int j = 0; j < r.n; ++j) integers += r.intvar[static_cast<std::size_t>(j)];
            EXPECT_EQ(integers, m.count) << m.name;
        }
        // One row fewer than the limit is too few rows, one column fewer too few columns.
        MpsxRead rows(m.rows_with_objective - 1, m.columns), cols(m.rows_with_objective, m.columns - 1);
        std::FILE *s1 = X04_OPEN_INPUT(path_of(m).c_str());
        std::FILE *s2 = X04_OPEN_INPUT(path_of(m).c_str());
        EXPECT_EQ(rows.read(zek::input_unit_number(s1), 1), 1) << m.name;
        EXPECT_EQ(rows.m, m.rows_with_objective) << m.name;
        EXPECT_EQ(cols.read(zek::input_unit_number(s2), 1), 2) << m.name;
        EXPECT_EQ(cols.n, m.columns) << m.name;
        for (std::FILE *s : {s1, s2}) {
            zek::forget_input_stream(s);
            std::fclose(s);
        }
    }
}

#if defined(ZEK_HAVE_GLPK)

double glpk_lower(int type, double lb) { return type == GLP_FR || type == GLP_UP ? -1e20 : lb; }
double glpk_upper(int type, double ub) { return type == GLP_FR || type == GLP_LO ? 1e20 : ub; }
std::string trimmed(const std::string &s) { return s.substr(0, s.find_last_not_of(' ') + 1); }

// GLPK reads the same files into the same problems: names, matrix, objective, bounds, integer columns.
// (GLPK keeps the objective row's right-hand side as a constant term and gives integer columns without
// bounds the bounds 0 and 1; those two differences are left out.)
TEST(Collections, AgreeWithGlpk) {
    glp_term_out(GLP_OFF);
    std::vector<Model> all = models("lp");
    const std::vector<Model> mip = models("mip");
    all.insert(all.end(), mip.begin(), mip.end());
    for (const Model &m : all) {
        MpsxRead r(m.rows_with_objective, m.columns);
        read_model(m, r);
        glp_prob *p = glp_create_prob();
        ASSERT_EQ(glp_read_mps(p, GLP_MPS_DECK, nullptr, path_of(m).c_str()), 0) << m.name;
        ASSERT_EQ(glp_get_num_cols(p), r.n) << m.name;
        ASSERT_EQ(glp_get_num_rows(p), r.m) << m.name;
        std::vector<int> ind(static_cast<std::size_t>(r.n) + 1);
        std::vector<double> val(static_cast<std::size_t>(r.n) + 1);
        int mismatches = 0;
        for (int j = 1; j <= r.n; ++j) {
            mismatches += trimmed(r.name(j)) != glp_get_col_name(p, j);
            mismatches += r.cvec[static_cast<std::size_t>(j - 1)] != glp_get_obj_coef(p, j);
            const bool integer = glp_get_col_kind(p, j) != GLP_CV;  // GLP_IV, or GLP_BV for 0-1 columns
            mismatches += r.intvar[static_cast<std::size_t>(j - 1)] != (integer ? 1 : 0);
            if (integer) continue;
            const int type = glp_get_col_type(p, j);
            mismatches += r.bl[static_cast<std::size_t>(j - 1)] != glpk_lower(type, glp_get_col_lb(p, j));
            mismatches += r.bu[static_cast<std::size_t>(j - 1)] != glpk_upper(type, glp_get_col_ub(p, j));
        }
        for (int i = 1; i <= r.m; ++i) {
            mismatches += trimmed(r.name(r.n + i)) != glp_get_row_name(p, i);
            const int type = glp_get_row_type(p, i);
            mismatches += r.bl[static_cast<std::size_t>(r.n + i - 1)] != glpk_lower(type, glp_get_row_lb(p, i));
            mismatches += r.bu[static_cast<std::size_t>(r.n + i - 1)] != glpk_upper(type, glp_get_row_ub(p, i));
            std::vector<double> row(static_cast<std::size_t>(r.n), 0.0);
            const int len = glp_get_mat_row(p, i, ind.data(), val.data());
            for (int k = 1; k <= len; ++k) row[static_cast<std::size_t>(ind[static_cast<std::size_t>(k)] - 1)] = val[static_cast<std::size_t>(k)];
            for (int j = 1; j <= r.n; ++j) mismatches += r.at(i, j) != row[static_cast<std::size_t>(j - 1)];
        }
        EXPECT_EQ(mismatches, 0) << m.name;
        glp_delete_prob(p);
    }
}

#endif

} // namespace
