#include "platform/linux/network/https_download.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <utility>

namespace norvane {

namespace {

QNetworkRequest anonymousRequest(const QUrl& url, const std::optional<QSslConfiguration>& tls) {
    constexpr int maxRedirections = 5;
    QNetworkRequest request(url);
    if (tls)
        request.setSslConfiguration(*tls);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(maxRedirections);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setHeader(QNetworkRequest::UserAgentHeader, "Norvane");
    request.setRawHeader("Accept-Language", "*");        // else the user's
    request.setRawHeader("Accept-Encoding", "identity"); // a compressed answer has no length one could bound
    return request;
}

} // namespace

HttpsDownload::HttpsDownload(const QUrl& url, const std::optional<QSslConfiguration>& tls,
                             int timeoutMilliseconds, Done done)
    : done_(std::move(done)), reply_(network_.get(anonymousRequest(url, tls))) {
    reply_->setReadBufferSize(maxBytes);
    connect(reply_, &QNetworkReply::readyRead, this, &HttpsDownload::collect);
    connect(reply_, &QNetworkReply::finished, this, &HttpsDownload::finish);
    // Of all together: the limit of a request starts anew with every byte.
    timeLimit_.setSingleShot(true);
    connect(&timeLimit_, &QTimer::timeout, reply_, &QNetworkReply::abort);
    timeLimit_.start(timeoutMilliseconds);
}

void HttpsDownload::collect() {
    bytes_ += reply_->read(maxBytes + 1 - bytes_.size());
    if (bytes_.size() > maxBytes)
        reply_->abort();
}

void HttpsDownload::finish() {
    constexpr int ok = 200;
    const Done done = std::exchange(done_, nullptr);
    if (!done)
        return;
    timeLimit_.stop();
    const QVariant status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    const bool complete = reply_->error() == QNetworkReply::NoError && status.toInt() == ok;
    done({.came = status.isValid(), .document = complete ? std::optional(bytes_) : std::nullopt});
}

} // namespace norvane
