// One small document over HTTPS.
#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QSslConfiguration>
#include <QTimer>
#include <QUrl>
#include <functional>
#include <optional>

namespace norvane {

/// Tells the server nothing but the product's name: no version, language or cookies. Redirections are
/// followed to https only. Main thread.
class HttpsDownload final : public QObject {
public:
    static constexpr qsizetype maxBytes = 1'048'576;

    struct Answer {
        bool came = false; ///< The server said at least something, in time.
        /// The bytes of an answer with status 200; none: an error, more bytes than allowed, or not complete
        /// in time.
        std::optional<QByteArray> document;
    };
    using Done = std::function<void(const Answer& answer)>;

    /// Begins at once; without a configuration by the system's. `done` is called once, from the event
    /// loop, unless the object is destroyed before; it may call deleteLater() on the object, but not delete
    /// it.
    HttpsDownload(const QUrl& url, const std::optional<QSslConfiguration>& tls, int timeoutMilliseconds,
                  Done done);

private:
    void collect();
    void finish();

    Done done_;
    QByteArray bytes_;
    QTimer timeLimit_;
    QNetworkAccessManager network_;
    QNetworkReply* reply_; // of network_
};

} // namespace norvane
