#pragma once

#include <QMenu>

namespace SPECTRUM_OVERVIEW {

class WaterfallView;

/// The context menu at a time of a waterfall. It asks what the keys ask, and deletes itself when it is closed.
class WaterfallMenu : public QMenu
{
    Q_OBJECT

public:
    WaterfallMenu(WaterfallView& view, quint64 time);
    ~WaterfallMenu() override;

private:
    template <typename Function>
    void offer(const char* name, const QString& text, const QKeySequence& key, Function&& chosen);
    void offerZoom(quint64 time);

    WaterfallView& m_view;
};

} // namespace SPECTRUM_OVERVIEW
