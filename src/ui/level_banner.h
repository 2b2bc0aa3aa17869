// The head of a level's page: its newest picture across the whole width, with name and author on it.
#pragma once

#include <QPixmap>
#include <QWidget>
#include <optional>

#include "ui/icons.h"

namespace kelvash::ui {

class LevelBanner final : public QWidget {
    Q_OBJECT

  public:
    explicit LevelBanner(QWidget* parent);

    // The picture is read the next time the program has nothing else to do; until then, and without one, the
    // colours of the program stand in its place. The former picture stays for as long as its level does.
    void ShowLevel(const QString& name, const QString& author, const QString& native_path);
    // Puts the sign of what is no level like the others before its name.
    void SetSign(std::optional<Glyph> sign);
    QString Name() const { return name_; }
    std::optional<Glyph> Sign() const { return sign_; }
    // In pixels of the screen; that of the last time until it has been read for another one.
    QSize PictureSize() const { return picture_.size(); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  private:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void ReadLater();
    void Load();

    QString name_;
    QString author_;
    QString path_;
    QPixmap picture_;
    std::optional<Glyph> sign_;
    bool pending_ = false;
    bool reads_ = false; // for a size of a moment ago perhaps
    int reading_ = 0;    // number of the last reading: what an earlier one brings isn't wanted any more
};

} // namespace kelvash::ui
