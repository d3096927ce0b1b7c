#pragma once

#include <QAccessibleWidget>

namespace SPECTRUM_OVERVIEW {

class WaterfallView;

/// A waterfall as a chart, for programs that read the screen: its value is what stands at the cursor, its description
/// the selected range.
class WaterfallAccessible final : public QAccessibleWidget
{
public:
    explicit WaterfallAccessible(WaterfallView* view);

    /// Has Qt use this class for waterfalls; from the second call on nothing happens.
    static void install();

    QString text(QAccessible::Text type) const override;

private:
    QString selectionText() const;
};

} // namespace SPECTRUM_OVERVIEW
