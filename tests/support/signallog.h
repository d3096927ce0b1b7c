#pragma once

#include <QAbstractItemModel>
#include <QStringList>

/// Writes down every signal of an item model, in order, as one text each: "begin insert 0-2", "end insert 0-2",
/// "changed 4" (whole row) or "changed 4 columns 1-2", "begin reset" and so on. Signals that a table of records never
/// emits are written down too, so that one that should not come fails a comparison.
class SignalLog
{
public:
    explicit SignalLog(const QAbstractItemModel* model)
    {
        logRows(model);
        logContent(model);
        logForeign(model);
    }
    SignalLog(const SignalLog&) = delete;
    SignalLog& operator=(const SignalLog&) = delete;

    /// What came since the last call.
    QStringList take() { return std::exchange(m_texts, {}); }

protected:
    void add(const QString& text) { m_texts.append(text); }

    QObject m_context;

private:
    static QString rows(int first, int last) { return QStringLiteral("%1-%2").arg(first).arg(last); }

    template <typename Signal>
    void logRange(const QAbstractItemModel* model, Signal signal, const QString& name)
    {
        QObject::connect(model, signal, &m_context, [this, name](const QModelIndex&, int first, int last) {
            add(name + QLatin1Char(' ') + rows(first, last));
        });
    }

    template <typename Signal>
    void logName(const QAbstractItemModel* model, Signal signal, const QString& name)
    {
        QObject::connect(model, signal, &m_context, [this, name] { add(name); });
    }

    void logRows(const QAbstractItemModel* model)
    {
        using Model = QAbstractItemModel;
        logRange(model, &Model::rowsAboutToBeInserted, QStringLiteral("begin insert"));
        logRange(model, &Model::rowsInserted, QStringLiteral("end insert"));
        logRange(model, &Model::rowsAboutToBeRemoved, QStringLiteral("begin remove"));
        logRange(model, &Model::rowsRemoved, QStringLiteral("end remove"));
        logName(model, &Model::modelAboutToBeReset, QStringLiteral("begin reset"));
        logName(model, &Model::modelReset, QStringLiteral("end reset"));
    }

    void logContent(const QAbstractItemModel* model)
    {
        QObject::connect(
            model, &QAbstractItemModel::dataChanged, &m_context,
            [this, model](const QModelIndex& topLeft, const QModelIndex& bottomRight) {
                const bool wholeRows = topLeft.column() == 0 && bottomRight.column() == model->columnCount() - 1;
                add(QStringLiteral("changed ") +
                    (topLeft.row() == bottomRight.row() ? QString::number(topLeft.row())
                                                        : rows(topLeft.row(), bottomRight.row())) +
                    (wholeRows ? QString()
                               : QStringLiteral(" columns ") + rows(topLeft.column(), bottomRight.column())));
            });
    }

    void logForeign(const QAbstractItemModel* model)
    {
        using Model = QAbstractItemModel;
        logName(model, &Model::headerDataChanged, QStringLiteral("header changed"));
        logName(model, &Model::layoutAboutToBeChanged, QStringLiteral("begin layout"));
        logName(model, &Model::layoutChanged, QStringLiteral("end layout"));
        logName(model, &Model::rowsAboutToBeMoved, QStringLiteral("begin move"));
        logName(model, &Model::rowsMoved, QStringLiteral("end move"));
        logName(model, &Model::columnsAboutToBeInserted, QStringLiteral("begin insert columns"));
        logName(model, &Model::columnsInserted, QStringLiteral("end insert columns"));
        logName(model, &Model::columnsAboutToBeRemoved, QStringLiteral("begin remove columns"));
        logName(model, &Model::columnsRemoved, QStringLiteral("end remove columns"));
        logName(model, &Model::columnsAboutToBeMoved, QStringLiteral("begin move columns"));
        logName(model, &Model::columnsMoved, QStringLiteral("end move columns"));
    }

    QStringList m_texts;
};

/// The display texts of a row, joined by " | ".
inline QString rowText(const QAbstractItemModel& model, int row)
{
    QStringList texts;
    for (int column = 0; column < model.columnCount(); ++column) {
        texts.append(model.index(row, column).data().toString());
    }
    return texts.join(QStringLiteral(" | "));
}

/// The display texts of one column, from the first row on.
inline QStringList columnTexts(const QAbstractItemModel& model, int column)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row) {
        texts.append(model.index(row, column).data().toString());
    }
    return texts;
}
