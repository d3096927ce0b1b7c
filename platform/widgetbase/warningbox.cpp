#include <widgetbase/warningbox.h>

#include <QPointer>
#include <QTextDocument>

namespace guiHelper {
namespace {

// A box finds out by itself whether its explanation holds markup, and cannot be told that there is none.
QString asMarkup(const QString& text)
{
    return text.isEmpty() ? text : Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal);
}

} // namespace

// QMessageBox::warning() has its box on the stack, where a parent that goes would delete it a second time.
QMessageBox::StandardButton warn(QWidget* parent, const QString& title, const QString& text,
                                 QMessageBox::StandardButtons buttons, const QString& explanation)
{
    const QPointer<QMessageBox> box = new QMessageBox(QMessageBox::Warning, title, text, buttons, parent);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(asMarkup(explanation));
    const int answer = box->exec();
    delete box;
    return static_cast<QMessageBox::StandardButton>(answer);
}

} // namespace guiHelper
