#pragma once

#include <zelkoguibase/editrecord/positionwidget.h>

#include <QComboBox>
#include <QDateTimeEdit>
#include <QTest>
#include <QToolButton>

/// What a user does with one end of a range, with mouse and keys; its parts by the names that they have.
class PositionHands
{
public:
    using Widget = ZelkoGUI::CopyRecordWidget::PositionWidget;

    explicit PositionHands(Widget& driven)
        : widget(driven)
        , edit(*widget.findChild<QDateTimeEdit*>(QStringLiteral("DateTimeEdit")))
        , combo(*widget.findChild<QComboBox*>(QStringLiteral("SelectBookmarkCombobox")))
    {}

    QToolButton* button(const char* name) const { return widget.findChild<QToolButton*>(QLatin1String(name)); }
    QToolButton* current() const { return button("SetCurrentPostionButton"); }
    QToolButton* reset() const
    {
        QToolButton* const toStart = button("ResetToStartButton");
        return toStart ? toStart : button("ResetToEndButton");
    }
    static void click(QToolButton* button) { QTest::mouseClick(button, Qt::LeftButton); }

    /// Presses a key in a part of the time: as often as said, or a text.
    void press(QDateTimeEdit::Section section, Qt::Key key, int times = 1) const
    {
        edit.setSelectedSection(section);
        for (int i = 0; i < times; ++i) {
            QTest::keyClick(&edit, key);
        }
    }
    void type(QDateTimeEdit::Section section, const QString& text) const
    {
        edit.setSelectedSection(section);
        QTest::keyClicks(&edit, text);
    }

    /// With the keyboard; -1 is none and cannot be chosen.
    void choose(int item) const
    {
        QTest::keyClick(&combo, Qt::Key_Home);
        for (int i = 0; i < item; ++i) {
            QTest::keyClick(&combo, Qt::Key_Down);
        }
    }

    Widget& widget;
    QDateTimeEdit& edit;
    QComboBox& combo;
};
