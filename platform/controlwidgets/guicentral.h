#pragma once

#include <controlwidgets/controlwidgets_export.h>

#include <QHash>
#include <QString>

/// Values on the tree of the process that belong to windows and to no server. GUI thread only.
class CONTROLWIDGETS_EXPORT GuiCentral
{
public:
    static GuiCentral& Instance();

    GuiCentral(const GuiCentral&) = delete;
    GuiCentral& operator=(const GuiCentral&) = delete;

    /// Makes a ValueNumeric<double> that nobody else has, and gives its path on the tree. `step` is the grain in which
    /// users change it, 0 for none. The value stays until it is removed. Empty, and no value, where `minimum` is above
    /// `maximum` or `value` outside of them.
    QString CreateUniqueValueFloat(double value, double minimum, double maximum, double step);

    /// Removes a value that was made here; other paths are left alone.
    void RemoveValue(const QString& path);

    /// The grain of a value that was made here, otherwise 0.
    double GetStep(const QString& path) const;

private:
    GuiCentral();
    ~GuiCentral();

    QHash<QString, double> m_steps;
    quint64 m_lastNumber = 0;
};
