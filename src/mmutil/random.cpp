#include "mmutil.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <ctime>

// One process-wide generator: L'Ecuyer's two congruential generators with a
// Bays-Durham shuffle. Plain statics; only one thread may draw.
static const int64_t IM1 = 2147483563, IM2 = 2147483399;
static const double AM = 1.0 / IM1;
static const int64_t IMM1 = IM1 - 1;
static const int64_t IA1 = 40014, IA2 = 40692, IQ1 = 53668, IQ2 = 52774, IR1 = 12211, IR2 = 3791;
static const int NTAB = 32;
static const int64_t NDIV = 1 + IMM1 / NTAB;
static const double EPS = 1.2e-7, RNMX = 1.0 - EPS;

static long idum = 1000;
static int64_t idum2 = 123456789;
static int64_t iy = 0;
static int64_t iv[NTAB];
static int need_newvars = 1;
static double v1 = 0, v2 = 0, factor = 0;

void ran2_reset_state()
{
    idum = 1000;
    idum2 = 123456789;
    iy = 0;
    for (int64_t& e : iv) e = 0;
    need_newvars = 1;
    v1 = v2 = factor = 0;
}

// Schrage's step x = a x mod m without overflow.
static int64_t lcg_step(int64_t x, int64_t a, int64_t q, int64_t r, int64_t m)
{
    int64_t k = x / q;
    x = a * (x - k * q) - k * r;
    return x < 0 ? x + m : x;
}

double ran2(long* seed)
{
    if (*seed <= 0) {
        *seed = (-*seed < 1) ? 1 : -*seed;
        idum2 = *seed;
        for (int j = NTAB + 7; j >= 0; --j) {
            *seed = lcg_step(*seed, IA1, IQ1, IR1, IM1);
            if (j < NTAB) iv[j] = *seed;
        }
        iy = iv[0];
    }
    *seed = lcg_step(*seed, IA1, IQ1, IR1, IM1);
    idum2 = lcg_step(idum2, IA2, IQ2, IR2, IM2);
    int64_t j = iy / NDIV;
    iy = iv[j] - idum2;
    iv[j] = *seed;
    if (iy < 1) iy += IMM1;
    double temp = AM * iy;
    return temp > RNMX ? RNMX : temp;
}

double randUniform() { return ran2(&idum); }

void init_random_seed()
{
    srand(static_cast<unsigned>(time(nullptr)));
    idum = rand();
}

double randGaussian()
{
    if (!need_newvars) {
        need_newvars = 1;
        return v2 * factor;
    }
    double rsq;
    do {
        v1 = 2.0 * randUniform() - 1.0;
        v2 = 2.0 * randUniform() - 1.0;
        rsq = v1 * v1 + v2 * v2;
    } while (rsq >= 1.0 || rsq == 0.0);
    need_newvars = 0;
    factor = sqrt(-2.0 * log(rsq) / rsq);
    return v1 * factor;
}

double randExponential()
{
    double u = randUniform();
    if (u == 0.0) u = 4.656612873077393e-10;
    return -log(u);
}

int select_reaction(double* rates, int n, double r, double total)
{
    double target = r * total;
    double sum = 0.0;
    for (int i = 0; i < n; ++i) {
        sum += rates[i];
        if (sum > target) return i;
    }
    return -1;
}
