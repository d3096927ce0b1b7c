#include <mapwidgets/roundnumber.h>

#include <cmath>

double roundNumber(double least)
{
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (power * factor >= least) {
            return power * factor;
        }
    }
    return power * 10;
}
