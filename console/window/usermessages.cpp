#include <console/window/usermessages.h>

#include <QMessageBox>

namespace ZelkoConsole {

UserMessages::UserMessages(QWidget* window)
    : m_window(window)
    , m_before(ErrorHandler::Instance()->SetMessageSink([this](const QString& text) { show(text); }))
{}

UserMessages::~UserMessages()
{
    ErrorHandler::Instance()->SetMessageSink(m_before);
    delete m_box;
}

QMessageBox* UserMessages::box() const
{
    return m_box;
}

void UserMessages::show(const QString& text)
{
    if (m_waiting.contains(text) || (m_box && m_box->text() == text)) {
        return;
    }
    if (m_waiting.size() == mostWaiting) {
        qWarning("%s", qUtf8Printable(text));
        return;
    }
    m_waiting.append(text);
    if (!m_box) {
        showNext();
    }
}

// A box that blocked would block whoever has something to say in the middle of what he does.
void UserMessages::showNext()
{
    if (m_waiting.isEmpty()) {
        return;
    }
    m_box = new QMessageBox(QMessageBox::Warning, m_window->windowTitle(), m_waiting.takeFirst(), QMessageBox::Ok,
                            m_window);
    m_box->setTextFormat(Qt::PlainText); // it may quote what a recorder says
    m_box->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(m_box, &QDialog::finished, m_box, [this] {
        m_box = nullptr;
        showNext();
    });
    m_box->open();
}

} // namespace ZelkoConsole
