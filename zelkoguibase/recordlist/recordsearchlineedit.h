#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QLineEdit>

namespace guiHelper {
class TextAlpha;
}

/// The field for the name of a record. While it is empty and without the focus it says so itself, in a text of its own
/// that is paler than what a user enters: text() gives that text then. Its colour is that of the palette, also when
/// that changes. GUI thread only.
class ZELKOGUIBASE_EXPORT RecordSearchLineEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit RecordSearchLineEdit(QWidget* parent = nullptr);
    ~RecordSearchLineEdit() override;

    /// Of its own events. It never eats one.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static QString invitation();
    void enter();
    void leave();

    guiHelper::TextAlpha* m_colour = nullptr;
};
