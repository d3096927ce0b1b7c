#include <chartcontrols/replaybarmenu_p.h>

#include <chartcontrols/vcreplaybar.h>

ReplayBarMenu::ReplayBarMenu(VCReplayBar& bar, int number, double moment)
    : QMenu(&bar)
    , m_bar(bar)
{
    setAttribute(Qt::WA_DeleteOnClose);
    if (m_bar.isFlag(number)) {
        offerRemoval(number);
    } else {
        offerCreation(moment);
    }
    offerPosition(moment);
}

template <typename Function>
void ReplayBarMenu::offer(const char* name, const QString& text, bool isEnabled, Function&& chosen)
{
    QAction* const added = addAction(text, this, std::forward<Function>(chosen));
    added->setObjectName(QLatin1String(name));
    added->setEnabled(isEnabled);
}

void ReplayBarMenu::offerRemoval(int number)
{
    const BookmarkType bookmark = m_bar.bookmarkOf(number);
    offer("RemoveBookmark", VCReplayBar::tr("Remove bookmark"), m_bar.canBeRemoved(number), [this, number, bookmark] {
        if (m_bar.canBeRemoved(number) && m_bar.bookmarkOf(number) == bookmark) {
            m_bar.removeBookmark(number);
        }
    });
}

void ReplayBarMenu::offerCreation(double moment)
{
    offer("SetBookmark", VCReplayBar::tr("Set bookmark here"), m_bar.canBeBookmarked(moment), [this, moment] {
        if (m_bar.canBeBookmarked(moment)) {
            m_bar.createBookmark(moment);
        }
    });
}

void ReplayBarMenu::offerPosition(double moment)
{
    constexpr int position = VCReplayBar::PositionMarker;
    offer("MovePosition", VCReplayBar::tr("Move position here"), m_bar.canBeMoved(position),
          [this, moment] { m_bar.moveTo(position, moment); });
}
