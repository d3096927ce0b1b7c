#pragma once

#include "commentedrecords.h"

#include <QApplication>
#include <QCheckBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QTableView>
#include <QTest>

/// What a user does with the table of comments in a window, with mouse and keys, and what is asked for by it: "add R
/// text", "delete R 1000000" as microseconds behind the begin of the records.
class CommentTable
{
public:
    template <typename Window>
    explicit CommentTable(const Window& window)
        : view(*window.template findChild<QTableView*>(QStringLiteral("HistoryTableView")))
        , immediately(*window.template findChild<QCheckBox*>(QStringLiteral("ImmediateCheckbox")))
    {
        QObject::connect(
            &window, &Window::si_addHistoryEntry, &m_context,
            [this](const QString& id, const QString& entry) { m_asked << QStringLiteral("add %1 %2").arg(id, entry); });
        QObject::connect(&window, &Window::si_deleteHistoryEntry, &m_context,
                         [this](const QString& id, quint64 timestamp) {
                             m_asked << QStringLiteral("delete %1 %2").arg(id).arg(timestamp - recordBegin);
                         });
    }

    QStringList takeAsked() { return std::exchange(m_asked, {}); }

    /// With the mouse, on the header of a row.
    void clickHeader(int row) const
    {
        QHeaderView* const header = view.verticalHeader();
        const int middle = header->sectionViewportPosition(row) + header->sectionSize(row) / 2;
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, {header->width() / 2, middle});
    }

    int lastRow() const { return view.model()->rowCount() - 1; }
    QModelIndex newText() const { return view.model()->index(lastRow(), 1); }
    QString text(int row) const { return view.model()->index(row, 1).data().toString(); }

    /// Null while it is not open.
    QLineEdit* editor() const { return qobject_cast<QLineEdit*>(view.indexWidget(newText())); }

    void typeAndEnter(const QString& text) const
    {
        QTest::keyClicks(editor(), text);
        QTest::keyClick(editor(), Qt::Key_Return);
    }

    QTableView& view;
    QCheckBox& immediately;

private:
    QObject m_context;
    QStringList m_asked;
};
