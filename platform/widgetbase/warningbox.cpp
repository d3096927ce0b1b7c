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

// The boxes of QMessageBox stand on the stack, where a parent that goes would delete them a second time.
QMessageBox::StandardButton answerTo(const QPointer<QMessageBox>& box, const QString& explanation)
{
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(asMarkup(explanation));
    const int answer = box->exec();
    delete box;
    return static_cast<QMessageBox::StandardButton>(answer);
}

} // namespace

QMessageBox::StandardButton warn(QWidget* parent, const QString& title, const QString& text,
                                 QMessageBox::StandardButtons buttons, const QString& explanation)
{
    return answerTo(new QMessageBox(QMessageBox::Warning, title, text, buttons, parent), explanation);
}

QMessageBox::StandardButton ask(QWidget* parent, const QString& title, const QString& text,
                                QMessageBox::StandardButtons buttons)
{
    return answerTo(new QMessageBox(QMessageBox::Question, title, text, buttons, parent), QString());
}

} // namespace guiHelper
