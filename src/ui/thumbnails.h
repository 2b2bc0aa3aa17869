// Small pictures of the levels' newest screenshots, read one by one while the program has nothing else to do.
#pragma once

#include <QCache>
#include <QObject>
#include <QPixmap>
#include <cstdint>
#include <deque>

namespace kelvash::ui {

class Thumbnails final : public QObject {
    Q_OBJECT

  public:
    static constexpr QSize kSize{64, 48};

    explicit Thumbnails(QObject* parent);

    // The level's thumbnail; an empty frame until Loaded tells that it has been read. What was asked for last
    // is read first, and what was asked for long ago not at all: the user has scrolled on.
    QPixmap Of(std::int32_t code);
    // Reads it anew; what was read before stands until then.
    void Renew(std::int32_t code);
    void ForgetAll();

  Q_SIGNALS:
    void Loaded(std::int32_t code);

  private:
    void LoadNext();
    void Want(std::int32_t code);

    QPixmap frame_;
    QCache<std::int32_t, QPixmap> ready_;
    std::deque<std::int32_t> wanted_;
    bool waiting_ = false;
};

} // namespace kelvash::ui
