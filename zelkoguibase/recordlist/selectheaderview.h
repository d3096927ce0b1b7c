#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QHeaderView>
#include <QIcon>

namespace ZelkoGUI {

/// A header that marks the sections in which something is selected, with an icon at their right. Of a tree only what
/// stands directly below the root of its view counts, not the branches. GUI thread only.
class ZELKOGUIBASE_EXPORT SelectHeaderView : public QHeaderView
{
    Q_OBJECT

public:
    SelectHeaderView(const QIcon& marker, Qt::Orientation orientation, QWidget* parent = nullptr);

    /// With the marker of the application's resources, ":/Zelko/RecordList/SelectMarker.svg".
    explicit SelectHeaderView(Qt::Orientation orientation, QWidget* parent = nullptr);

    ~SelectHeaderView() override;

protected:
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;

    /// The usual size, and room for the marker beside it.
    QSize sectionSizeFromContents(int section) const override;

private:
    bool isMarked(int section) const;
    int markerSize() const;
    int margin() const;

    const QIcon m_marker;
};

} // namespace ZelkoGUI
