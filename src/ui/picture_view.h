// A picture of a level, scaled into the room that there is; a text where there is none to show.
#pragma once

#include <QImage>
#include <QPixmap>
#include <QWidget>

#include "ui/look.h"

namespace kelvash::ui {

class PictureView final : public QWidget {
    Q_OBJECT

  public:
    explicit PictureView(QWidget* parent);

    // Reads the picture the next time the program has nothing else to do. A file that is no picture is told
    // in its place. An empty path shows the text alone.
    void ShowFile(const QString& native_path, const QString& text);
    // A picture that is in memory, and what a screen reader says of it.
    void ShowPicture(const QImage& picture, const QString& name);
    // A small picture isn't drawn larger than it is.
    void KeepNatural() { natural_ = true; }
    // Of several, the one that commands are about.
    void SetSelected(bool selected);
    bool IsSelected() const { return selected_; }
    QString Path() const { return path_; }
    bool HasPicture() const { return !picture_.isNull(); }
    // In pixels of the screen; that of the last time until it has been read for another one.
    QSize PictureSize() const { return picture_.size(); }
    QString Text() const { return text_; }
    QSize sizeHint() const override { return picture::kAlone; }

  private:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void DrawPicture(QPainter& painter) const;
    void DrawEmpty(QPainter& painter) const;
    QSize Pixels() const;
    void ReadLater();
    void DrawSelection(QPainter& painter) const;
    void Load();
    void Take(const QImage& picture);

    QString path_;
    QString text_;
    QPixmap picture_; // as large as it is shown
    QImage whole_;    // one that is in memory, of no path
    bool pending_ = false;
    bool reads_ = false; // for a size of a moment ago perhaps
    bool natural_ = false;
    bool selected_ = false;
    int reading_ = 0; // number of the last reading: what an earlier one brings isn't wanted any more
};

} // namespace kelvash::ui
