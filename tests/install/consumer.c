/* A program built against the installed package: find_package(zek2) and the umbrella header. */
#include <stdio.h>
#include <zek2.h>

int main(void) {
    printf("%.17g\n", X02AJC());
    return X02_BASE() == 2 ? 0 : 1;
}
