// load_time LIBRARY: loads a library with all that it needs, resolves all names at once, and prints
// how many nanoseconds that took. Exit codes: 0 done, 1 it cannot be loaded, 2 wrong use.
#include <dlfcn.h>
#include <stdio.h>
#include <time.h>

static long long Now(void) {
    struct timespec stTime;
    (void)clock_gettime(CLOCK_MONOTONIC, &stTime);
    return stTime.tv_sec * 1000000000LL + stTime.tv_nsec;
}

int main(int iCount, char **ppcWords) {
    if (iCount != 2) {
        (void)fprintf(stderr, "Usage: load_time LIBRARY\n");
        return 2;
    }
    const long long llBegin = Now();
    void *pvLibrary = dlopen(ppcWords[1], RTLD_NOW | RTLD_LOCAL);
    const long long llEnd = Now();
    if (pvLibrary == NULL) {
        (void)fprintf(stderr, "load_time: %s\n", dlerror());
        return 1;
    }
    (void)printf("%lld\n", llEnd - llBegin);
    (void)dlclose(pvLibrary);
    return 0;
}
