// A picture of a level, scaled into the room that there is; a text where there is none to show.
#pragma once

#include <QImage>
#include <QPixmap>
#include <QWidget>

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
    QString Text() const { return text_; }
    QSize sizeHint() const override { return {320, 240}; }

  private:
    void paintEvent(QPaintEvent* event) override;
    void DrawPicture(QPainter& painter);
    void DrawEmpty(QPainter& painter) const;
    void DrawSelection(QPainter& painter) const;
    void Load();
    void Take(const QImage& picture);

    QString path_;
    QString text_;
    QPixmap picture_;
    QPixmap scaled_; // to the size that it is shown at, while that stays
    bool pending_ = false;
    bool natural_ = false;
    bool selected_ = false;
    int reading_ = 0; // number of the last reading: what an earlier one brings isn't wanted any more
};

} // namespace kelvash::ui
