#pragma once

#include <mapwidgets/mapwidgets_export.h>

#include <QString>

#include <functional>
#include <vector>

/// A flag on an axis: its pole, and the cloth with the text beside it. It stands for all markers that fall on the same
/// pixel.
struct MarkerFlag
{
    int number = 0;   ///< of the marker that is shown: the current one, or the one set last
    int count = 0;    ///< of markers here
    double place = 0; ///< of the pole
    double left = 0;  ///< of the cloth
    double right = 0;
    QString text;           ///< as much of it as the cloth has room for; empty where there is room for none
    bool isCrowded = false; ///< its neighbour leaves no room for a text
};

/// Where the flags of an axis stand: one for each pixel, with the cloth as long as its text and the next flag allow.
/// The last one flies to the left where there is more room.
class MAPWIDGETS_EXPORT MarkerFlags
{
public:
    struct Axis
    {
        double left = 0; ///< in pixels
        double right = 0;
        double pixel = 1; ///< size of a pixel of the screen
    };

    /// How wide a text is, and as much of a text as fits into a width.
    struct Texts
    {
        std::function<double(const QString&)> width;
        std::function<QString(const QString&, double)> elided;
    };

    explicit MarkerFlags(const Axis& axis);

    /// Puts a marker on its pixel. One that is no place of the axis is left out. The one called current is shown
    /// whatever comes after it.
    void add(int number, double place, bool isCurrent);

    /// The flags from left to right. `nameOf` gives the text of a marker; it is asked for those alone that have room.
    std::vector<MarkerFlag> layOut(const Texts& texts, const std::function<QString(int)>& nameOf) const;

    /// The text of a flag with all its room.
    static QString textOf(const MarkerFlag& flag, const QString& name);

    /// Space in pixels before and behind the text of a cloth.
    static constexpr double padding = 4;

private:
    struct Column
    {
        int number = 0;
        int count = 0;
        bool hasCurrent = false;
    };

    std::vector<MarkerFlag> poles() const;
    void flipLast(std::vector<MarkerFlag>& flags, const Texts& texts, const QString& name) const;
    void hang(MarkerFlag& flag, double limit, const Texts& texts, const QString& name) const;

    const Axis m_axis;
    std::vector<Column> m_columns;
};
