#include "ui/single_instance.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QLocalSocket>
#include <QTimer>
#include <QtEndian>

#include "foundation/drives.h"
#include "foundation/messages.h"
#include "foundation/native_text.h"
#include "foundation/text.h"
#include "foundation/waiting.h"
#include "ui/form_support.h"
#include "ui/messages.h"

namespace kelvash::ui {

namespace {

// A message: the mark, the length of what follows in four bytes, a native path in UTF-8.
constexpr char kMark[] = "KELVASH1";
constexpr qsizetype kMarkLength = sizeof kMark - 1;
constexpr qsizetype kHeadLength = kMarkLength + 4;
constexpr quint32 kLongestPath = 32768;
constexpr char kTaken = '+';
constexpr int kMostWaiting = 8; // connections at once
// Milliseconds: the first may just be starting, or be in a step that looks after no window.
constexpr int kSenderPatience = 2000;
constexpr int kConnectPatience = 5000;
constexpr int kAnswerPatience = 10000;
constexpr int kRetry = 50;

QString SocketName() {
    QString name = FromUtf8(GenericTextOf(RuntimeFolder() / (FolderIdentity(AppFolder()) + ".socket")));
    // Where there are no paths for sockets a name does.
    if (!name.startsWith(QLatin1Char('/')))
        name.replace(QLatin1Char('/'), QLatin1Char('-')).remove(QLatin1Char(':'));
    return name;
}

QByteArray Encode(const std::string& archive) {
    QByteArray message(kMark, kMarkLength);
    message.resize(kHeadLength);
    qToLittleEndian(static_cast<quint32>(archive.size()), message.data() + kMarkLength);
    return message.append(archive.data(), static_cast<qsizetype>(archive.size()));
}

enum class Reading { Whole, Partial, Nonsense };

Reading Decode(const QByteArray& message, std::string& archive) {
    if (!QByteArray(kMark, kMarkLength).startsWith(message.left(kMarkLength))) return Reading::Nonsense;
    if (message.size() < kHeadLength) return Reading::Partial;
    const auto length = qFromLittleEndian<quint32>(message.constData() + kMarkLength);
    if (length > kLongestPath || message.size() > kHeadLength + static_cast<qsizetype>(length))
        return Reading::Nonsense;
    if (message.size() < kHeadLength + static_cast<qsizetype>(length)) return Reading::Partial;
    archive = message.mid(kHeadLength).toStdString();
    const bool is_path = IsUtf8(archive) && archive.find('\0') == std::string::npos;
    return is_path ? Reading::Whole : Reading::Nonsense;
}

bool Connect(QLocalSocket& socket, const QString& name) {
    QElapsedTimer passed;
    passed.start();
    for (;;) {
        socket.connectToServer(name);
        if (socket.waitForConnected(kRetry)) return true;
        if (passed.hasExpired(kConnectPatience)) return false;
        socket.abort();
        WaitMillis(kRetry, Wait::Sleep);
    }
}

bool HandOver(const QString& name, const std::string& archive) {
    QLocalSocket socket;
    if (archive.size() > kLongestPath || !Connect(socket, name)) return false;
    socket.write(Encode(archive));
    char answer = 0;
    return socket.waitForBytesWritten(kAnswerPatience) && socket.waitForReadyRead(kAnswerPatience) &&
           socket.getChar(&answer) && answer == kTaken;
}

} // namespace

SingleInstance::SingleInstance() {
    connect(&server_, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* const socket = server_.nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, this, [this, socket] { Receive(socket); });
            QTimer::singleShot(kSenderPatience, socket, &QLocalSocket::abort);
        }
    });
}

SingleInstance::Role SingleInstance::Start(const std::string& archive) {
    const LockResult result =
        lock_.Take(AppFolder(), LockKind::Window, LoadMessage(msg::kDoingWindow), holder_);
    if (result == LockResult::Held)
        return HandOver(SocketName(), archive) ? Role::HandedOver : Role::NoAnswer;
    // Without a runtime folder nothing can be changed, but all can be looked at.
    if (result == LockResult::Taken) Listen(SocketName());
    return Role::First;
}

void SingleInstance::Listen(const QString& name) {
    QLocalServer::removeServer(name); // who held the lock before may have left it
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    server_.setMaxPendingConnections(kMostWaiting);
    server_.listen(name); // without it a second start is told that nobody answers
}

void SingleInstance::Receive(QLocalSocket* socket) {
    // Read whole only when it is there: no more is kept than a message can hold.
    const QByteArray message = socket->peek(kHeadLength + static_cast<qsizetype>(kLongestPath) + 1);
    std::string archive;
    switch (Decode(message, archive)) {
        case Reading::Partial:
            return;
        case Reading::Nonsense:
            socket->abort();
            return;
        case Reading::Whole:
            socket->readAll();
            socket->putChar(kTaken);
            socket->flush();
            socket->disconnectFromServer();
            Q_EMIT Wished(archive);
    }
}

} // namespace kelvash::ui
