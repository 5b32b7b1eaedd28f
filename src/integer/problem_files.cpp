// H02BUF (front and worker), the exported parser, and the solution printer H02BVF.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>
#include <string>

#include "frame/ifail.h"
#include "frame/input_units.h"
#include "frame/output.h"
#include "integer/problem_files.h"
#include "zek2/frame.h"
#include "zek2/h02.h"

namespace {

using zek::h02::kNameLength;

// The argument exits of the problem file readers, H02BUF and E04MZF; the reader's own exits follow from
// the MPSX code table.
enum ReaderExit { kMaxnBelow1, kMaxmBelow1, kDefaultBoundsCross, kBadSense };
constexpr zek::ExitRow kReaderExits[] = {
    {14, 99999, " ** On entry, MAXN .lt. 1:\n    MAXN = %16ld."},
    {14, 99998, " ** On entry, MAXM .lt. 1:\n    MAXM = %16ld."},
    {14, 99997, " ** On entry, XBLDEF .gt. XBUDEF:\n    XBLDEF = %16.7G, XBUDEF = %16.7G."},
    {14, 99996, " ** On entry, OPTIM does not equal MIN or MAX:\n    OPTIM = %3.3s."},
};

// H02BVF's exits.
enum H02bvfExit { kNBelow1, kMNegative, kLdaTooSmall };
constexpr zek::ExitRow kH02bvfExits[] = {
    {1, 99999, " ** On entry, N .le. 0: N =%16ld."},
    {1, 99998, " ** On entry, M .lt. 0: M =%16ld."},
    {1, 99997, " ** On entry, LDA .lt. max(1,M):\n    LDA =%16ld, M =%16ld."},
};

// A name argument as 8 characters, blank padded.
std::string name8(const char *text, int length) {
    std::string s = zek::fixed_string(text, std::min(length, kNameLength));
    s.resize(kNameLength, ' ');
    return s;
}

void put_name8(char *text, int length, const std::string &name) {
    if (text == nullptr || length <= 0) return;
    std::memset(text, ' ', static_cast<std::size_t>(length));
    std::memcpy(text, name.data(), std::min<std::size_t>(name.size(), static_cast<std::size_t>(length)));
}

zek::Records lines_of(const std::string &text) {
    zek::Records rec;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = text.find('\n', start);
        rec.add(std::string_view(text).substr(start, end == std::string::npos ? std::string::npos : end - start));
        if (end == std::string::npos) break;
        start = end + 1;
    }
    return rec;
}

} // namespace

extern "C" {

void H02_MPSX_READ(int infile, int maxn, int maxm, double xbldef, double xbudef, int mpslst, int print_unit, int *n,
                   int *m, double *a, double *bl, double *bu, int *intvar, int *rowtyp, char *nmprob, char *nmobj,
                   char *nmrhs, char *nmrng, char *nmbnd, char *crname, int *nint, int *nnz, int *iobj, int *nline,
                   int *ierror, int *ivalue, char *cvalue, char *section, int nmprob_len, int nmobj_len,
                   int nmrhs_len, int nmrng_len, int nmbnd_len, int crname_len, int cvalue_len, int section_len) {
    zek::h02::MpsxArrays ar;
    ar.maxn = maxn;
    ar.maxm = maxm;
    ar.xbldef = xbldef;
    ar.xbudef = xbudef;
    ar.listing = mpslst != 0;
    ar.print_unit = print_unit;
    ar.a = a;
    ar.bl = bl;
    ar.bu = bu;
    ar.intvar = intvar;
    ar.rowtyp = rowtyp;
    ar.crname = crname;
    ar.crname_width = crname_len;
    ar.problem = name8(nmprob, nmprob_len);
    ar.objective = name8(nmobj, nmobj_len);
    ar.rhs = name8(nmrhs, nmrhs_len);
    ar.ranges = name8(nmrng, nmrng_len);
    ar.bounds = name8(nmbnd, nmbnd_len);
    zek::h02::MpsxOutcome out;
    if (maxn >= 1 && maxm >= 1 && crname_len >= 1) out = zek::h02::mpsx_read(zek::input_stream(infile), ar);
    put_name8(nmprob, nmprob_len, ar.problem);
    put_name8(nmobj, nmobj_len, ar.objective);
    put_name8(nmrhs, nmrhs_len, ar.rhs);
    put_name8(nmrng, nmrng_len, ar.ranges);
    put_name8(nmbnd, nmbnd_len, ar.bounds);
    *n = out.n;
    *m = out.m;
    *nint = out.nint;
    *nnz = out.nnz;
    *iobj = out.iobj;
    *nline = out.nline;
    *ierror = out.ierror;
    ivalue[0] = static_cast<int>(out.ivalue[0]);
    ivalue[1] = static_cast<int>(out.ivalue[1]);
    put_name8(cvalue, cvalue_len, out.cvalue);
    put_name8(section, section_len, out.section);
}

} // extern "C"

namespace {

// The reader of a problem file, H02BUF's (INTEGER_ITEMS set) and E04MZF's (INTVAR null): checks, the
// parse, the objective taken out of the matrix, the start point.
void read_problem(const char *routine, bool integer_items, int infile, int *m, int *n, int maxm, int maxn, double *a,
                  double *cvec, double *bl, double *bu, int *intvar, int *rowtyp, char *nmprob, char *nmobj,
                  char *nmrhs, char *nmrng, char *nmbnd, char *crname, double *x, double xbldef, double xbudef,
                  const char *optim, int mpslst, char *errbuf, int *ifail, int nmprob_len, int nmobj_len,
                  int nmrhs_len, int nmrng_len, int nmbnd_len, int crname_len, int optim_len) {
    zek::FailureExit exit(routine, errbuf, ifail);
    if (maxn < 1) return void(zek::take(exit, kReaderExits, kMaxnBelow1, {maxn}));
    if (maxm < 1) return void(zek::take(exit, kReaderExits, kMaxmBelow1, {maxm}));
    if (xbldef > xbudef) return void(zek::take(exit, kReaderExits, kDefaultBoundsCross, {xbldef, xbudef}));
    std::string sense = zek::fixed_string(optim, std::min(optim_len, 3));
    sense.resize(3, ' ');
    for (char &c : sense) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (sense != "MIN" && sense != "MAX")
        return void(zek::take(exit, kReaderExits, kBadSense, {zek::fixed_string(optim, std::min(optim_len, 3))}));

    const int width = std::max(crname_len, 1);
    zek::h02::MpsxArrays ar;
    ar.maxn = maxn;
    ar.maxm = maxm;
    ar.xbldef = xbldef;
    ar.xbudef = xbudef;
    ar.listing = mpslst != 0;
    ar.print_unit = zek::advisory_unit();
    ar.integer_items = integer_items;
    ar.a = a;
    ar.bl = bl;
    ar.bu = bu;
    ar.intvar = intvar;
    ar.rowtyp = rowtyp;
    ar.crname = crname;
    ar.crname_width = width;
    ar.problem = name8(nmprob, nmprob_len);
    ar.objective = name8(nmobj, nmobj_len);
    ar.rhs = name8(nmrhs, nmrhs_len);
    ar.ranges = name8(nmrng, nmrng_len);
    ar.bounds = name8(nmbnd, nmbnd_len);
    const zek::h02::MpsxOutcome out = zek::h02::mpsx_read(zek::input_stream(infile), ar);
    put_name8(nmprob, nmprob_len, ar.problem);
    put_name8(nmobj, nmobj_len, ar.objective);
    put_name8(nmrhs, nmrhs_len, ar.rhs);
    put_name8(nmrng, nmrng_len, ar.ranges);
    put_name8(nmbnd, nmbnd_len, ar.bounds);
    *m = out.m;
    *n = out.n;

    if (out.ierror != 0) {
        const zek::Records rec = lines_of(zek::h02::mpsx_error_text(out));
        const long exit_number = 99995 - (out.ierror - 1);
        switch (zek::h02::mpsx_error(out.ierror).shows) {
        case zek::h02::MpsxShows::Counts:
            exit.fail_with_records(out.ierror, exit_number, rec, {out.ivalue[0], out.ivalue[1]});
            break;
        case zek::h02::MpsxShows::Line: exit.fail_with_records(out.ierror, exit_number, rec, {out.ivalue[0]}); break;
        case zek::h02::MpsxShows::Name: exit.fail_with_records(out.ierror, exit_number, rec, {out.cvalue}); break;
        case zek::h02::MpsxShows::SectionName:
            exit.fail_with_records(out.ierror, exit_number, rec, {out.section, out.cvalue});
            break;
        case zek::h02::MpsxShows::Nothing: exit.fail_with_records(out.ierror, exit_number, rec); break;
        }
        return;
    }

    // The library minimises: a maximisation is served here by negating the objective.
    const double sign = sense == "MIN" ? 1.0 : -1.0;
    for (std::ptrdiff_t j = 0; j < out.n; ++j) cvec[j] = sign * a[(out.iobj - 1) + j * maxm];
    zek::h02::drop_row(out.iobj, m, out.n, a, maxm, bl, bu, crname, width, rowtyp);
    for (int j = 1; j <= out.n; ++j) x[j - 1] = j % 2 == 1 ? 0.0 : 1.0;
    exit.succeed();
}

// Marks the outputs of a reader's front undefined.
void mark_outputs(int rows, int cols, double *a, double *cvec, double *x, double *bl, double *bu, int *intvar,
                  int *rowtyp) {
    if (rows < 1 || cols < 1) return;
    for (std::ptrdiff_t j = 0; j < cols; ++j) ZEK_MARK_REAL_ARRAY(rows, a + j * rows);
    ZEK_MARK_REAL_ARRAY(cols, cvec);
    ZEK_MARK_REAL_ARRAY(cols, x);
    ZEK_MARK_REAL_ARRAY(cols, bl);
    ZEK_MARK_REAL_ARRAY(rows, bl + cols);
    ZEK_MARK_REAL_ARRAY(cols, bu);
    ZEK_MARK_REAL_ARRAY(rows, bu + cols);
    if (intvar != nullptr) ZEK_MARK_INTEGER_ARRAY(cols, intvar);
    ZEK_MARK_INTEGER_ARRAY(rows, rowtyp);
}

} // namespace

extern "C" {

void H02BUF_INNER(int infile, int *m, int *n, int maxm, int maxn, double *a, double *cvec, double *bl, double *bu,
                  int *intvar, int *rowtyp, char *nmprob, char *nmobj, char *nmrhs, char *nmrng, char *nmbnd,
                  char *crname, double *x, double xbldef, double xbudef, const char *optim, int mpslst, char *errbuf,
                  int *ifail, int nmprob_len, int nmobj_len, int nmrhs_len, int nmrng_len, int nmbnd_len,
                  int crname_len, int optim_len, int errbuf_len) {
    (void)errbuf_len;
    read_problem("H02BUF", true, infile, m, n, maxm, maxn, a, cvec, bl, bu, intvar, rowtyp, nmprob, nmobj, nmrhs,
                 nmrng, nmbnd, crname, x, xbldef, xbudef, optim, mpslst, errbuf, ifail, nmprob_len, nmobj_len,
                 nmrhs_len, nmrng_len, nmbnd_len, crname_len, optim_len);
}

void E04MZF(int infile, int *m, int *n, int maxm, int maxn, double *a, double *cvec, double *bl, double *bu,
            int *rowtyp, char *nmprob, char *nmobj, char *nmrhs, char *nmrng, char *nmbnd, char *crname, double *x,
            double xbldef, double xbudef, const char *optim, int mpslst, char *errbuf, int *ifail, int nmprob_len,
            int nmobj_len, int nmrhs_len, int nmrng_len, int nmbnd_len, int crname_len, int optim_len,
            int errbuf_len) {
    (void)errbuf_len;
    read_problem("E04MZF", false, infile, m, n, maxm, maxn, a, cvec, bl, bu, nullptr, rowtyp, nmprob, nmobj, nmrhs,
                 nmrng, nmbnd, crname, x, xbldef, xbudef, optim, mpslst, errbuf, ifail, nmprob_len, nmobj_len,
                 nmrhs_len, nmrng_len, nmbnd_len, crname_len, optim_len);
}

void E04MZF_BYREF(const int *infile, int *m, int *n, const int *maxm, const int *maxn, double *a, double *cvec,
                  double *bl, double *bu, int *rowtyp, char *nmprob, char *nmobj, char *nmrhs, char *nmrng,
                  char *nmbnd, char *crname, double *x, const double *xbldef, const double *xbudef, const char *optim,
                  const int *mpslst, int *ifail, int nmprob_len, int nmobj_len, int nmrhs_len, int nmrng_len,
                  int nmbnd_len, int crname_len, int optim_len) {
    zek::Front front("E04MZF");
    mark_outputs(*maxm, *maxn, a, cvec, x, bl, bu, nullptr, rowtyp);
    E04MZF(*infile, m, n, *maxm, *maxn, a, cvec, bl, bu, rowtyp, nmprob, nmobj, nmrhs, nmrng, nmbnd, crname, x,
           *xbldef, *xbudef, optim, *mpslst, front.errbuf(), ifail, nmprob_len, nmobj_len, nmrhs_len, nmrng_len,
           nmbnd_len, crname_len, optim_len, zek::kErrbufLength);
    front.finish(*ifail);
}

void H02BUF(const int *infile, int *m, int *n, const int *maxm, const int *maxn, double *a, double *cvec, double *bl,
            double *bu, int *intvar, int *rowtyp, char *nmprob, char *nmobj, char *nmrhs, char *nmrng, char *nmbnd,
            char *crname, double *x, const double *xbldef, const double *xbudef, const char *optim, const int *mpslst,
            int *ifail, int nmprob_len, int nmobj_len, int nmrhs_len, int nmrng_len, int nmbnd_len, int crname_len,
            int optim_len) {
    zek::Front front("H02BUF");
    const int rows = *maxm, cols = *maxn;
    mark_outputs(rows, cols, a, cvec, x, bl, bu, intvar, rowtyp);
    H02BUF_INNER(*infile, m, n, rows, cols, a, cvec, bl, bu, intvar, rowtyp, nmprob, nmobj, nmrhs, nmrng, nmbnd,
                 crname, x, *xbldef, *xbudef, optim, *mpslst, front.errbuf(), ifail, nmprob_len, nmobj_len,
                 nmrhs_len, nmrng_len, nmbnd_len, crname_len, optim_len, zek::kErrbufLength);
    front.finish(*ifail);
}

void H02BVF(const int *n, const int *m, const double *a, const int *lda, const char *crname, const double *x,
            const double *clamda, const int *istate, const double *bl, const double *bu, const double *bigbnd,
            int *ifail, int crname_len) {
    zek::FailureExit exit("H02BVF", nullptr, ifail);
    const int nn = *n, mm = *m, ld = *lda;
    if (nn < 1) return void(zek::take(exit, kH02bvfExits, kNBelow1, {nn}));
    if (mm < 0) return void(zek::take(exit, kH02bvfExits, kMNegative, {mm}));
    if (ld < std::max(1, mm)) return void(zek::take(exit, kH02bvfExits, kLdaTooSmall, {ld, mm}));
    const int unit = zek::advisory_unit();
    const double big = *bigbnd;
    auto say = [&](const std::string &s) { zek::host_line(unit, s.c_str(), static_cast<int>(s.size())); };
    auto line = [&](int k, double value) {
        static const char states[] = "--++FRLLULEQTF";
        const int s = istate[k - 1];
        const std::string state = s >= -2 && s <= 4 ? std::string(states + 2 * (s + 2), 2) : std::string("??");
        const std::string name = zek::fixed_string(crname + static_cast<std::ptrdiff_t>(k - 1) * crname_len,
                                                   std::min(crname_len, kNameLength));
        const double lo = bl[k - 1], up = bu[k - 1];
        std::string text = zek::format(" %8.8s ", name.c_str()) + zek::format("%2.2s ", state.c_str()) +
                           zek::format("%14.6G", value);
        text += std::abs(lo) >= big ? std::string("     None     ") : zek::format("%14.6G", lo);
        text += std::abs(up) >= big ? std::string("     None     ") : zek::format("%14.6G", up);
        text += zek::format("%12.4G", clamda[k - 1]) + zek::format("%12.4G", std::min(value - lo, up - value));
        say(text);
    };
    say("");
    say(" Varbl   State     Value     Lower Bound   Upper Bound    Lagr Mult   Residual");
    for (int j = 1; j <= nn; ++j) line(j, x[j - 1]);
    if (mm > 0) {
        say("");
        say(" L Con   State     Value     Lower Bound   Upper Bound    Lagr Mult   Residual");
        for (int i = 1; i <= mm; ++i) {
            double value = 0.0;
            for (std::ptrdiff_t j = 0; j < nn; ++j) value += a[(i - 1) + j * ld] * x[j];
            line(nn + i, value);
        }
    }
    exit.succeed();
}

} // extern "C"
