#include "mps_test_reader.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>

namespace zek_test {

namespace {

// Field k (1..6) of a fixed-column record: columns 2-3, 5-12, 15-22, 25-36, 40-47, 50-61.
std::string field(const std::string &line, int k) {
    static const int start[] = {1, 4, 14, 24, 39, 49};
    static const int width[] = {2, 8, 8, 12, 8, 12};
    const std::size_t s = static_cast<std::size_t>(start[k - 1]);
    if (line.size() <= s) return std::string();
    std::string f = line.substr(s, static_cast<std::size_t>(width[k - 1]));
    const std::size_t b = f.find_first_not_of(' ');
    if (b == std::string::npos) return std::string();
    const std::size_t e = f.find_last_not_of(' ');
    return f.substr(b, e - b + 1);
}

} // namespace

bool read_mps(const std::string &path, LpModel &model, double infinity, std::string *error) {
    std::ifstream in(path);
    if (!in) {
        if (error) *error = "cannot open " + path;
        return false;
    }
    model = LpModel{};
    enum class Section { None, Rows, Columns, Rhs, Ranges, Bounds } section = Section::None;
    std::map<std::string, int> row_index, column_index;
    std::vector<char> row_type;
    std::string objective;
    std::vector<std::vector<std::pair<int, double>>> column_entries;
    std::vector<double> rhs, range;
    std::vector<bool> has_range;
    std::vector<double> lower, upper;
    std::string line;
    const auto entry = [&](int col, const std::string &row, const std::string &value) {
        if (row.empty()) return;
        const double v = std::strtod(value.c_str(), nullptr);
        if (row == objective) {
            model.c[static_cast<std::size_t>(col)] += v;
            return;
        }
        const auto it = row_index.find(row);
        if (it != row_index.end()) column_entries[static_cast<std::size_t>(col)].emplace_back(it->second, v);
    };
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line[0] == '*') continue;
        if (line[0] != ' ') {
            const std::string word = line.substr(0, line.find(' '));
            if (word == "NAME") model.name = line.size() > 14 ? field(" " + line.substr(14), 2) : "";
            else if (word == "ROWS") section = Section::Rows;
            else if (word == "COLUMNS") section = Section::Columns;
            else if (word == "RHS") section = Section::Rhs;
            else if (word == "RANGES") section = Section::Ranges;
            else if (word == "BOUNDS") section = Section::Bounds;
            else if (word == "ENDATA") break;
            else {
                if (error) *error = "unknown section " + word;
                return false;
            }
            continue;
        }
        switch (section) {
        case Section::Rows: {
            const std::string type = field(line, 1), name = field(line, 2);
            if (type == "N") {
                if (objective.empty()) objective = name;
                continue;
            }
            row_index[name] = static_cast<int>(row_type.size());
            row_type.push_back(type[0]);
            model.rows.push_back(name);
            break;
        }
        case Section::Columns: {
            if (field(line, 3) == "'MARKER'") continue;
            const std::string name = field(line, 2);
            auto it = column_index.find(name);
            if (it == column_index.end()) {
                it = column_index.emplace(name, static_cast<int>(model.columns.size())).first;
                model.columns.push_back(name);
                model.c.push_back(0.0);
                column_entries.emplace_back();
            }
            entry(it->second, field(line, 3), field(line, 4));
            entry(it->second, field(line, 5), field(line, 6));
            break;
        }
        case Section::Rhs:
        case Section::Ranges: {
            if (rhs.empty()) {
                rhs.assign(row_type.size(), 0.0);
                range.assign(row_type.size(), 0.0);
                has_range.assign(row_type.size(), false);
            }
            for (int k = 3; k <= 5; k += 2) {
                const auto it = row_index.find(field(line, k));
                if (it == row_index.end()) continue;  // the objective's own right-hand side is ignored
                const double v = std::strtod(field(line, k + 1).c_str(), nullptr);
                if (section == Section::Rhs) rhs[static_cast<std::size_t>(it->second)] = v;
                else {
                    range[static_cast<std::size_t>(it->second)] = v;
                    has_range[static_cast<std::size_t>(it->second)] = true;
                }
            }
            break;
        }
        case Section::Bounds: {
            if (lower.empty()) {
                lower.assign(model.columns.size(), 0.0);
                upper.assign(model.columns.size(), infinity);
            }
            const std::string type = field(line, 1);
            const auto it = column_index.find(field(line, 3));
            if (it == column_index.end()) continue;
            const std::size_t j = static_cast<std::size_t>(it->second);
            const double v = std::strtod(field(line, 4).c_str(), nullptr);
            if (type == "UP") {
                upper[j] = v;
                if (v < 0.0 && lower[j] == 0.0) lower[j] = -infinity;
            } else if (type == "LO") lower[j] = v;
            else if (type == "FX") lower[j] = upper[j] = v;
            else if (type == "FR") {
                lower[j] = -infinity;
                upper[j] = infinity;
            } else if (type == "MI") lower[j] = -infinity;
            else if (type == "PL") upper[j] = infinity;
            else if (type == "BV") {
                lower[j] = 0.0;
                upper[j] = 1.0;
            }
            break;
        }
        case Section::None: break;
        }
    }
    model.n = static_cast<int>(model.columns.size());
    model.m = static_cast<int>(row_type.size());
    if (rhs.empty()) {
        rhs.assign(row_type.size(), 0.0);
        range.assign(row_type.size(), 0.0);
        has_range.assign(row_type.size(), false);
    }
    if (lower.empty()) {
        lower.assign(model.columns.size(), 0.0);
        upper.assign(model.columns.size(), infinity);
    }
    model.a.assign(static_cast<std::size_t>(model.lda()) * static_cast<std::size_t>(model.n), 0.0);
    for (int j = 0; j < model.n; ++j)
        for (const auto &[i, v] : column_entries[static_cast<std::size_t>(j)])
            model.a[static_cast<std::size_t>(i) + static_cast<std::size_t>(j) * model.lda()] += v;
    model.bl = lower;
    model.bu = upper;
    for (int i = 0; i < model.m; ++i) {
        const double b = rhs[static_cast<std::size_t>(i)], r = range[static_cast<std::size_t>(i)];
        double l = -infinity, u = infinity;
        switch (row_type[static_cast<std::size_t>(i)]) {
        case 'E':
            l = u = b;
            if (has_range[static_cast<std::size_t>(i)]) {
                if (r > 0.0) u = b + r;
                else l = b + r;
            }
            break;
        case 'L':
            u = b;
            if (has_range[static_cast<std::size_t>(i)]) l = b - std::abs(r);
            break;
        case 'G':
            l = b;
            if (has_range[static_cast<std::size_t>(i)]) u = b + std::abs(r);
            break;
        default: break;
        }
        model.bl.push_back(l);
        model.bu.push_back(u);
    }
    return true;
}

} // namespace zek_test
