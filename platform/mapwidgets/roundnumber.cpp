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

double partOf(double distance, double least, const std::function<double(double)>& roundUp)
{
    for (const int parts : {10, 6, 5, 4, 3, 2}) {
        const double part = distance / parts;
        if (part >= least && roundUp(part) == part) {
            return part;
        }
    }
    return distance;
}
