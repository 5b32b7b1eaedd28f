// The engines of the scalar zero finders: refinement of a bracket (C05AZF, c05azc) and the search for
// a bracket (C05AVF), both by reverse communication with their whole state in the caller's array, so
// that searches may be interleaved.
#ifndef ZEK_ANALYSIS_ROOTS_SCALAR_H
#define ZEK_ANALYSIS_ROOTS_SCALAR_H

namespace zek {

// Outcome of one entry of an engine.
enum class ZeroOutcome {
    Request,      // IND is 2, 3 or 4: evaluate f at X and enter again
    Found,        // IND 0: X (and the other end Y) bracket the zero to the tolerance, or f(X) = 0
    SameSign,     // IND 0: f(X) and f(Y) have the same sign, neither zero
    Pole,         // IND 0: the bracket closed on a point where |f| grew without bound, or f was not finite
    TooSmall,     // IND 0: the bracket can shrink no further and is still wider than the tolerance
    NoBracket,    // IND 0: no sign change found inside the bounds
};

// Length of the state of the bracket refinement.
constexpr int kRefineState = 17;
// Length of the state of the bracket search.
constexpr int kBracketState = 11;

// One entry of the refinement (arguments already checked: IND in -1, 1..4, TOLX > 0, IR in 0..2).
ZeroOutcome refine_bracket(double *x, double *y, double fx, double tolx, int ir, double *c, int *ind);

// One entry of the bracket search (arguments checked on the first entry by the caller: BOUNDL < BOUNDU,
// X inside, X+H or X-H inside, X+H != X).  On Found, [X, Y] holds a sign change.
ZeroOutcome search_bracket(double *x, double fx, double h, double boundl, double boundu, double *y, double *c,
                           int *ind);

// C05AZF, the IFAIL-layer refinement (a worker without a front; ERRBUF may be null).  IFAIL 2 a bad IND,
// 3 TOLX not positive or IR out of range, 1 no sign change, 5 tolerance too small, 4 a pole.
void C05AZF_worker(double *x, double *y, double fx, double tolx, int ir, double *c, int *ind, char *errbuf,
                   int *ifail);

} // namespace zek

#endif
