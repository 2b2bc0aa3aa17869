// A picture of a level, scaled into the room that there is; a text where there is none to show.
#pragma once

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
    QString Path() const { return path_; }
    bool HasPicture() const { return !picture_.isNull(); }
    QString Text() const { return text_; }
    QSize sizeHint() const override { return {320, 240}; }

  private:
    void paintEvent(QPaintEvent* event) override;
    void DrawEmpty(QPainter& painter) const;
    void Load();

    QString path_;
    QString text_;
    QPixmap picture_;
    bool pending_ = false;
};

} // namespace kelvash::ui
