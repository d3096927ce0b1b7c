#pragma once

#include "replaybarhands.h"
#include "testbookmarks.h"

#include <valuecore/tree.h>
#include <valuecore/value.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>

#include <QToolButton>

#include <memory>

/// A widget that is shown, with its parts by the names that they have, and the positions that it has told.
class ShownReplayBar
{
public:
    static constexpr auto begin = static_cast<long long>(recordBegin);
    static constexpr long long second = 1'000'000;

    /// So many seconds behind the begin of the records of tests.
    static qint64 timeAt(long long seconds) { return begin + seconds * second; }
    static double momentAt(long long seconds) { return static_cast<double>(timeAt(seconds)); }

    explicit ShownReplayBar(std::unique_ptr<ZelkoGUI::ReplayBarWidget> made)
        : widget(std::move(made))
        , hands(bar())
    {
        QObject::connect(widget.get(), &ZelkoGUI::ReplayBarWidget::si_currentPosChanged, &m_context,
                         [this](quint64 position) { m_positions.append(position); });
        widget->resize(600, widget->sizeHint().height());
        widget->show();
    }

    VCReplayBar& bar() const { return *widget->findChild<VCReplayBar*>(QStringLiteral("ZelkoReplayBar")); }
    QToolButton* apply() const { return widget->findChild<QToolButton*>(QStringLiteral("ApplyBookmarks")); }
    QToolButton* reset() const { return widget->findChild<QToolButton*>(QStringLiteral("ResetBookmarks")); }
    const Marker& position() const { return *bar().GetMarker(VCReplayBar::PositionMarker); }
    QList<quint64> takePositions() { return std::exchange(m_positions, {}); }

    /// As somebody else on the tree does it.
    void setPosition(double moment) const
    {
        Tree::Instance()->Find<Value<double>>(position().GetValueTreePath())->SetValue(moment, nullptr);
    }

    const std::unique_ptr<ZelkoGUI::ReplayBarWidget> widget;
    ReplayBarHands hands;

private:
    QObject m_context;
    QList<quint64> m_positions;
};
