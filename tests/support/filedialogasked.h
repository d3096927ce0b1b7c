#pragma once

#include <console/hands/dialoganswer.h>

#include <QFileDialog>

#include <functional>
#include <optional>

namespace ZelkoTest {

/// What a file dialog was asked with.
struct FileDialogAsked
{
    QWidget* parent;
    QString title;
    QString folder;
    QStringList nameFilters;
    QString selectedNameFilter;
    QFileDialog::FileMode fileMode;
    QFileDialog::AcceptMode acceptMode;
    QFileDialog::Options options;

    bool isNative() const { return !options.testFlag(QFileDialog::DontUseNativeDialog); }
};

/// Makes `call`, looks at the file dialog that it opens, and cancels that. Nothing if it opens none.
inline std::optional<FileDialogAsked> askedBy(const std::function<void()>& call)
{
    std::optional<FileDialogAsked> asked;
    const ZelkoConsole::DialogAnswer answer([&asked](QWidget* window) {
        if (const auto* const dialog = qobject_cast<QFileDialog*>(window)) {
            asked = FileDialogAsked{dialog->parentWidget(),
                                    dialog->windowTitle(),
                                    dialog->directory().absolutePath(),
                                    dialog->nameFilters(),
                                    dialog->selectedNameFilter(),
                                    dialog->fileMode(),
                                    dialog->acceptMode(),
                                    dialog->options()};
        }
    });
    call();
    return asked;
}

} // namespace ZelkoTest
