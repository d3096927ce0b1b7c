#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

class QItemSelectionModel;

namespace ZelkoConsole {

/// Tells by record IDs what is selected in a list whose model has the columns of a record list.
///
/// A small selection is told with each change. A large one, which takes its time to collect, is told once per turn of
/// the event loop at most; from its first change until then nothing is told to be selected. That a list is emptied to
/// be filled anew is not told: what comes back is selected again, or `report()` is called. GUI thread.
class SelectionReporter : public QObject
{
    Q_OBJECT

public:
    /// Records of which a selection counts as small.
    static constexpr int smallSelection = 100;

    /// `selection` outlives this object.
    explicit SelectionReporter(const QItemSelectionModel* selection, QObject* parent = nullptr);
    ~SelectionReporter() override;

    /// Tells what is selected now.
    void report();

Q_SIGNALS:
    /// The IDs from the first row of the list to the last.
    void selected(const QStringList& records);

private:
    void selectionChanged();
    bool isSmall() const;

    const QItemSelectionModel* const m_selection;
    QTimer m_soon;
};

} // namespace ZelkoConsole
