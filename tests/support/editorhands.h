#pragma once

#include "patience.h"

#include <zelkobase/data/filterconditionlist.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

/// What a user does in an editor, with mouse and keys.
namespace editorhands {

/// A child of an editor by its object name, which it must have.
template <typename T>
T& part(const QWidget& editor, const QString& name)
{
    T* const found = editor.findChild<T*>(name);
    if (!found) {
        qFatal("there is no part '%s' of that kind", qPrintable(name));
    }
    return *found;
}

/// What stands in the row of an editor, from the left: object names, or "stretch N".
inline QStringList rowOf(const QWidget& editor)
{
    QStringList names;
    const auto* const row = qobject_cast<QBoxLayout*>(editor.layout());
    for (int place = 0; row && place < row->count(); ++place) {
        const QWidget* const widget = row->itemAt(place)->widget();
        names << (widget ? widget->objectName() : QStringLiteral("stretch %1").arg(row->stretch(place)));
    }
    return names;
}

/// A window of an editor and, for the focus to be elsewhere, of a button above it.
struct Form
{
    explicit Form(QWidget* editor)
    {
        auto* const layout = new QVBoxLayout(&window);
        elsewhere.setText(QStringLiteral("Elsewhere"));
        layout->addWidget(&elsewhere);
        layout->addWidget(editor);
        window.resize(640, 120);
        elsewhere.setFocus();
        window.show();
        window.activateWindow();
    }

    bool isActive() { return QTest::qWaitForWindowActive(&window, patience); }

    /// The object names of what the tabulator key reaches, from the first child of the editor until it leaves it.
    QStringList reachedByTab(const QWidget& editor)
    {
        QStringList names;
        QTest::keyClick(&elsewhere, Qt::Key_Tab);
        while (editor.isAncestorOf(QApplication::focusWidget()) && names.size() < 20) {
            names << QApplication::focusWidget()->objectName();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        return names;
    }

    QWidget window;
    QPushButton elsewhere{&window};
};

/// The list of the values of an enumeration, in its own window; null while there is none.
inline QListView* openList()
{
    for (QWidget* const top : QApplication::topLevelWidgets()) {
        if (top->objectName() == QStringLiteral("ValuesListView") && top->isVisible()) {
            return qobject_cast<QListView*>(top);
        }
    }
    return nullptr;
}

/// Where check boxes have their box, and push buttons are buttons as well.
inline void click(QAbstractButton& button)
{
    QTest::mouseClick(&button, Qt::LeftButton, Qt::NoModifier, QPoint(8, button.height() / 2));
}

inline void retype(QLineEdit& edit, const QString& text)
{
    edit.setFocus();
    QTest::keyClick(&edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&edit, Qt::Key_Delete);
    QTest::keyClicks(&edit, text);
}

inline void choose(QComboBox& box, int index)
{
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_Home);
    for (int row = 0; row < index; ++row) {
        QTest::keyClick(&box, Qt::Key_Down);
    }
}

/// Restores a condition from what another one of that name would have saved. False if it could not be.
template <typename Condition>
bool restore(Condition& condition, const Condition& saved)
{
    ZELKO_XML::FilterConditionList list;
    saved.writeToXml(list);
    return condition.readFromXml(list);
}

} // namespace editorhands
