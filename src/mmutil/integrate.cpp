#include "mmutil.h"

#include <cmath>
#include <memory>

double rk4_one(double x, double y, double h, double (*f)(double, double))
{
    double k1 = f(x, y);
    double k2 = f(x + h / 2, y + h * k1 / 2);
    double k3 = f(x + h / 2, y + h * k2 / 2);
    double k4 = f(x + h, y + h * k3);
    return y + h * (k1 + 2 * k2 + 2 * k3 + k4) / 6;
}

double* rk4_vec(double x, int n, double* y, double h, double* (*f)(double, int, double*))
{
    typedef std::unique_ptr<double[]> Array;
    // t = y + step * k, as a fresh array.
    auto shifted = [&](const Array& k, double step) {
        Array t(new double[n]);
        for (int i = 0; i < n; ++i) t[i] = y[i] + step * k[i];
        return t;
    };
    Array k1(f(x, n, y));
    Array t1 = shifted(k1, h / 2);
    Array k2(f(x + h / 2, n, t1.get()));
    Array t2 = shifted(k2, h / 2);
    Array k3(f(x + h / 2, n, t2.get()));
    Array t3 = shifted(k3, h);
    Array k4(f(x + h, n, t3.get()));
    double* r = new double[n];
    for (int i = 0; i < n; ++i) r[i] = y[i] + h * (k1[i] + 2 * k2[i] + 2 * k3[i] + k4[i]) / 6;
    return r;
}

int LinearRegression(double* x, double* y, int n, double* a, double* b, double* s)
{
    *a = *b = *s = 0.0;
    if (n < 3) {
        fprintf(stderr, "Not enough data [%d] (at least n > 2)!\n", n);
        return -1;
    }
    double sx = 0, sy = 0, sxx = 0, syy = 0, sxy = 0;
    for (int i = 0; i < n; ++i) {
        sx += x[i];
        sy += y[i];
        sxx += x[i] * x[i];
        syy += y[i] * y[i];
        sxy += x[i] * y[i];
    }
    double d = n * sxx - sx * sx;
    if (fabs(d) > 1.11022302e-16) {
        *b = (n * sxy - sx * sy) / d;
        *a = (sy - sx * *b) / n;
        // Rounding can leave a perfect fit a hair below zero; that is no error.
        double ss = (syy - sy * sy / n) - (sxy - sx * sy / n) * *b;
        *s = ss > 0 ? sqrt(ss / (n - 2)) : 0.0;
    }
    return 0;
}
