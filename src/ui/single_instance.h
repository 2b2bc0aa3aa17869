// One window per application's folder: a second start raises the first window and hands it its Archive.
//
// Who holds the window's lock on the folder is the first. It listens on a local socket that only the user
// reaches; the lock ends with its process, so a socket that a crash has left hinders nobody.
#pragma once

#include <QLocalServer>
#include <QObject>
#include <cstdint>
#include <string>

#include "foundation/lock.h"

class QLocalSocket;

namespace kelvash::ui {

class SingleInstance final : public QObject {
    Q_OBJECT

  public:
    enum class Role {
        First,      // the window is this program's to open
        HandedOver, // another one shows it; this program is to end
        NoAnswer    // another one runs, but doesn't answer
    };

    SingleInstance();
    // Becomes the first, or hands over what the first is to open: the native path of an Archive, or nothing
    // for the window alone.
    Role Start(const std::string& archive);
    // The process of the first.
    std::int64_t Other() const { return holder_.Process; }

  Q_SIGNALS:
    // Another start wants the window, and this Archive in it if it isn't empty.
    void Wished(const std::string& archive);

  private:
    void Listen(const QString& name);
    void Receive(QLocalSocket* socket);

    FolderLock lock_;
    LockHolder holder_;
    QLocalServer server_;
};

} // namespace kelvash::ui
