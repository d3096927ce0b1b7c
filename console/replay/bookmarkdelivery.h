#pragma once

#include <zelkobase/service/recorderservice.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>

#include <QPointer>

#include <chrono>

namespace ZelkoGUI {
class ZelkoServerGUIController;
}

namespace ZelkoConsole {

/// Sends bookmarks that were changed, and waits for the record to come back with them. GUI thread.
class BookmarkDelivery
{
public:
    enum class Outcome {
        Taken,
        NotTaken,     ///< they are what was changed and not sent, as before
        NoConnection, ///< and so perhaps no record that they belong to
    };

    /// The recorder may take as long as for any other answer.
    static constexpr std::chrono::milliseconds DefaultLimit = ZelkoCommon::RecorderService::DefaultLimit;

    /// What `bookmarks` has to send goes out through `controller`, whose records tell what became of it. Both may go
    /// while they are waited for.
    BookmarkDelivery(ZelkoGUI::BookmarkModel* bookmarks, ZelkoGUI::ZelkoServerGUIController* controller);
    ~BookmarkDelivery();

    /// Waits in an event loop, so that windows go on working, with the cursor saying so.
    Outcome send(std::chrono::milliseconds limit = DefaultLimit);

private:
    using Entries = ZelkoGUI::BookmarkModel::Entries;

    bool isConnected() const;
    bool isTaken() const;
    void synchronize();
    void wait(std::chrono::milliseconds limit) const;
    void takeBack(const Entries& changed) const;

    const QPointer<ZelkoGUI::BookmarkModel> m_bookmarks;
    const QPointer<ZelkoGUI::ZelkoServerGUIController> m_controller;
    QString m_record;
    Entries m_sent;
};

} // namespace ZelkoConsole
