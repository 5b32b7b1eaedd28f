// The StRD nonlinear regression files of tests/data/strd/nonlinear, read by the least-squares tests and
// the benchmark alike: data lines "y x", the two published starts ("start b1 ... bn"), the certified
// parameters ("certified ...") and residual sum of squares ("sumsq s"); '#' begins a comment line.
#ifndef ZEK_TESTS_STRD_DATA_H
#define ZEK_TESTS_STRD_DATA_H

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace strd {

struct Data {
    std::vector<double> x, y, certified;
    std::vector<std::vector<double>> starts;
    double sumsq = 0.0;
};

// FILE (no extension) of the folder DIR, a model of N parameters.
inline Data read(const std::string &dir, const std::string &file, int n) {
    Data d;
    std::ifstream in(dir + "/strd/nonlinear/" + file + ".dat");
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream s(line);
        std::string head;
        s >> head;
        std::vector<double> v(static_cast<std::size_t>(n));
        if (head == "start" || head == "certified") {
            for (double &e : v) s >> e;
            (head == "start" ? d.starts.emplace_back(v), void() : void(d.certified = v));
        } else if (head == "sumsq") {
            s >> d.sumsq;
        } else {
            d.y.push_back(std::stod(head));
            d.x.emplace_back();
            s >> d.x.back();
        }
    }
    return d;
}

} // namespace strd

#endif
