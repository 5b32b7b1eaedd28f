/* Chapter H03: transportation and shortest path.
 *
 * Both routines take all their space from the caller and print nothing but their failure messages.
 * Array lengths are stated with each routine; indices are one-based as in the formulae.
 */
#ifndef ZEK2_H03_H
#define ZEK2_H03_H

#include "types.h"

ZEK_BEGIN_DECLS

/* H03ABF: the cheapest shipment from MA sources to MB destinations, M = MA + MB.
 *   COST(MMM, MB)   unit costs, COST(i, j) from source i to destination j (any sign)
 *   A(M)            A(1:MA) availabilities, A(MA+1:M) requirements, non-negative, equal sums
 *   MAXIT           iterations allowed (one optimality test and exchange each)
 *   NUMIT           out: iterations used
 *   K15(M), K7(M)   out: source and destination (numbered 1..MB) of each basic cell, in tree order.
 *                   The basis has M-1 cells; position M is the slot of the entering cell while the
 *                   routine works, so these two arrays are declared M long (the safe length).
 *   K9(M-1)         out: flow of each basic cell (cells of flow 0 belong to the basis as any other)
 *   KOST(M-1)       out: unit cost of each basic cell
 *   Z               out: total cost, the sum of flow times cost in floating point
 *   IWORK1(M), IWORK2(M)  work: the tree's parent cells and the potentials
 * The first basis grows from the cheapest cell, one new vertex per cell; iterations exchange the most
 * negative reduced cost into the basis around its cycle.  IFAIL 1: an argument (MA, MB, MA > MMM,
 * M - MA - MB, MAXIT, a negative amount, unequal sums); 2: MAXIT iterations without optimum (the basis
 * and Z are those of the last iteration); 3: the potentials leave the integer range (costs too large
 * for a basis of this size). */
ZEK_API void H03ABF(const int cost[], const int *mmm, const int *ma, const int *mb, const int *m, int a[],
                    const int *maxit, int *numit, int k15[], int k7[], int k9[], int kost[], double *z, int iwork1[],
                    int iwork2[], int *ifail) ZEK_SYMBOL("q18670");

/* H03ADF: the shortest path from vertex NS to vertex NE of a graph of N vertices with NNZ edges of
 * positive length: edge k from IROW(k) to ICOL(k) of length D(k).  DIRECT true: the edges are directed,
 * NNZ <= N(N-1); false: each undirected edge is given once with IROW(k) < ICOL(k), NNZ <= N(N-1)/2.
 *   D(NNZ), IROW(NNZ), ICOL(NNZ)  in: the edges; out: the same edges sorted by row, then column
 *   SPLEN         out: the length of the path
 *   PATH(N)       out: the path's vertices from NS to NE, zeros behind
 *   IWORK(3*N+2+NNZ)  work: row starts (N+1), predecessors (N), and for DIRECT false the column starts
 *                 (N+1) and the edges by column (NNZ)
 *   WORK(2*N)     work: a dense row of lengths (N) and the labels (N)
 * Labels are made final one at a time, the smallest first (the first of equals), with an O(N^2)
 * selection; a path is replaced only by a strictly shorter one.  IFAIL 1: N < 2; 2: NS or NE out of
 * range; 3: NS = NE; 4: NNZ; 5: an edge out of range (or IROW(k) >= ICOL(k) for DIRECT false); 6: a length
 * not above 0.0 or NaN; 7: an edge repeated; 8: no path from NS to NE. */
ZEK_API void H03ADF(const int *n, const int *ns, const int *ne, const int *direct, const int *nnz, double d[],
                    int irow[], int icol[], double *splen, int path[], int iwork[], double work[], int *ifail)
    ZEK_SYMBOL("q49251");

ZEK_END_DECLS

#endif
