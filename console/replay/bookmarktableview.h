#pragma once

#include <QPointer>
#include <QTableView>

namespace guiHelper {
class ViewportNote;
}

namespace ZelkoGUI {
class BookmarkModel;
}

namespace ZelkoConsole {

/// The bookmarks of a record as a table to edit. The vertical header adds and takes away, as its signs say, and so do
/// Insert and Delete; F2, a double click and typing edit. Where there is nothing, it says why.
class BookmarkTableView : public QTableView
{
    Q_OBJECT

public:
    explicit BookmarkTableView(QWidget* parent = nullptr);
    ~BookmarkTableView() override;

    /// Null for none. Not owned, and may go first.
    void setBookmarks(ZelkoGUI::BookmarkModel* bookmarks);

    /// Has the bookmarks looked at only, whatever the model allows; not at first.
    void setLocked(bool locked);

    /// Takes over what is being typed, as if the user were done with it.
    void commitEdit();

    /// What it says where there are no bookmarks; empty while there are.
    QString note() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void arrange();
    void dressHeaders();
    void connectParts();
    void sectionClicked(int section);
    void add();
    void remove();
    bool editByKey(int key);
    QList<bool> selectedRows() const;
    void look();
    void widenTimes();
    QString noteNow() const;
    bool isAddRow(const QModelIndex& index) const;
    bool isEditable() const;

    bool m_isLocked = false;
    QPointer<ZelkoGUI::BookmarkModel> m_bookmarks;
    guiHelper::ViewportNote* m_note;
};

} // namespace ZelkoConsole
