#include "platform/linux/network/https_update_service.h"

#include <QCoreApplication>
#include <QFile>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <gtest/gtest.h>

#include "platform/linux/network/appcast.h"
#include "platform/simulated/simulated_time.h"
#include "platform/simulated/simulated_user_defaults.h"
#include "tests/support/test_peers.h"

namespace norvane {

namespace {

QByteArray item(const QByteArray& version, const QByteArray& link) {
    return "<item><title>Norvane</title><link>" + link +
           "</link><enclosure url='https://example.org/x' x:version='" + version + "'/></item>";
}

QByteArray feed(const QByteArray& items) {
    return "<?xml version='1.0'?><rss version='2.0' xmlns:x='urn:x'><channel>" + items + "</channel></rss>";
}

const QByteArray page = "https://example.org/norvane";
const UpdateResult unreachable{UpdateResult::Kind::unreachable};
const UpdateResult unreadable{UpdateResult::Kind::unreadable};
const UpdateResult upToDate{UpdateResult::Kind::upToDate};
UpdateResult offer(const std::string& version) {
    return {UpdateResult::Kind::available, version, page.toStdString()};
}

TEST(Appcast, OffersTheNewestVersionThatHasAPage) {
    const struct {
        const char* what;
        QByteArray xml;
        UpdateResult expected;
    } cases[] = {
        {"numbers, not texts", feed(item("1.10.0", page)), offer("1.10.0")},
        {"older", feed(item("1.1.9", page)), upToDate},
        {"equal, written longer", feed(item("1.2.0.0", page)), upToDate},
        {"the newest of several", feed(item("1.3", page) + item("2.0.1", page) + item("1.9", page)),
         offer("2.0.1")},
        {"not comparable", feed(item("2.0-beta", page) + item("1.3", page)), offer("1.3")},
        {"page that is not safe", feed(item("2.0", "http://example.org") + item("1.3", page)), offer("1.3")},
        {"page that is a script", feed(item("2.0", "javascript:alert(1)")), unreadable},
        {"no page", feed("<item><enclosure version='2.0'/></item>"), unreadable},
        {"no versions", feed(""), unreadable},
        {"cut short", feed(item("2.0", page)).chopped(8), unreadable},
        {"deep", feed(QByteArray("<a>").repeated(100'000)), unreadable},
        {"document type", "<!DOCTYPE rss [<!ENTITY a 'b'>]>" + feed(item("2.0", page)), unreadable},
        {"file of the machine",
         "<!DOCTYPE rss [<!ENTITY a SYSTEM 'file:///etc/passwd'>]>" + feed(item("2.0", "&a;")), unreadable},
    };
    for (const auto& c : cases)
        EXPECT_EQ(readAppcast(c.xml, "1.2.0"), c.expected) << c.what;
}

/// Answers every request by a function; speaks TLS with a certificate that only the test knows.
class Server {
public:
    using Answer = std::function<void(QSslSocket& client)>;

    explicit Server(const ScratchFolder& folder) {
        const std::string key = folder.path("key.pem");
        const std::string certificate = folder.path("certificate.pem");
        PeerProcess({"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
                     "-nodes", "-keyout", key, "-out", certificate, "-days", "2", "-subj", "/CN=localhost",
                     "-addext", "subjectAltName=DNS:localhost"})
            .waitForExit();
        const QList<QSslCertificate> certificates =
            QSslCertificate::fromPath(QString::fromStdString(certificate));
        trusting.setCaCertificates(certificates);
        QFile keyFile(QString::fromStdString(key));
        EXPECT_TRUE(keyFile.open(QIODevice::ReadOnly));
        QSslConfiguration own = QSslConfiguration::defaultConfiguration();
        own.setLocalCertificateChain(certificates);
        own.setPrivateKey(QSslKey(&keyFile, QSsl::Ec));
        tls_.setSslConfiguration(own);
        QObject::connect(&tls_, &QSslServer::pendingConnectionAvailable, &tls_, [this] { serve(); });
        EXPECT_TRUE(tls_.listen(QHostAddress::LocalHost));
    }

    [[nodiscard]] QString url() const {
        return QStringLiteral("https://localhost:%1/feed").arg(tls_.serverPort());
    }

    QSslConfiguration trusting = QSslConfiguration::defaultConfiguration();
    Answer answer;
    QByteArray request; ///< The last one.
    int requests = 0;

private:
    void serve() {
        auto* const client = qobject_cast<QSslSocket*>(tls_.nextPendingConnection());
        QObject::connect(client, &QSslSocket::readyRead, client, [this, client] {
            request = client->readAll(); // small enough to come at once
            ++requests;
            answer(*client);
        });
    }

    QSslServer tls_;
};

Server::Answer reply(const QByteArray& status, const QByteArray& headers, const QByteArray& body) {
    return [=](QSslSocket& client) {
        client.write("HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
                     "\r\n" + headers + "\r\n" + body);
    };
}

Server::Answer found(const QByteArray& items) { return reply("200 OK", "Set-Cookie: id=7\r\n", feed(items)); }

/// Sends the piece again whenever the last one is gone, and at that interval.
Server::Answer endless(const QByteArray& head, const QByteArray& piece, int milliseconds) {
    return [=](QSslSocket& client) {
        client.write("HTTP/1.1 200 OK\r\n" + head);
        auto* const timer = new QTimer(&client);
        QObject::connect(timer, &QTimer::timeout, &client, [&client, piece] {
            if (client.bytesToWrite() == 0)
                client.write(piece);
        });
        timer->start(milliseconds);
    };
}

class UpdateServiceTest : public testing::Test {
protected:
    void SetUp() override {
        if (!installed("openssl"))
            GTEST_SKIP() << "openssl is not installed";
        server_.emplace(folder_);
    }
    [[nodiscard]] UpdateFeed feedAt(const QString& url) const {
        return {.url = url, .ownVersion = "1.2.0", .tls = server_->trusting, .timeoutMilliseconds = 1000};
    }
    [[nodiscard]] std::unique_ptr<HttpsUpdateService> service(const UpdateFeed& of) {
        return std::make_unique<HttpsUpdateService>(of, defaults_, time_, time_,
                                                    [this](const UpdateResult& result, bool asked) {
                                                        told_.push_back(result);
                                                        EXPECT_EQ(asked, asked_);
                                                    });
    }
    /// Runs the event loop until the check that runs is over.
    static void finish(const UpdateService& service) {
        EXPECT_TRUE(eventually(
            [&] {
                QCoreApplication::processEvents();
                return service.canCheckForUpdates();
            },
            5));
    }

    const ScratchFolder folder_;
    std::optional<Server> server_;
    SimulatedTime time_{Instant{}};
    SimulatedUserDefaults defaults_;
    std::vector<UpdateResult> told_;
    bool asked_ = false; // by the user
};

TEST_F(UpdateServiceTest, TellsWhatTheFeedSaysAndNothingAboutTheUser) {
    defaults_.set("automaticUpdateChecks.v1", {false});
    const auto updates = service(feedAt(server_->url()));
    updates->start();
    const Server::Answer good = found(item("1.10.0", page));
    const QByteArray newer = item("2.0", page);
    const QByteArray insecure = "Location: http://localhost:1/feed\r\n";
    const struct {
        const char* what;
        Server::Answer answer;
        UpdateResult expected;
    } cases[] = {
        {"newer", good, offer("1.10.0")},
        {"the same", found(item("1.2.0", page)), upToDate},
        {"as long as allowed",
         reply("200 OK", "", feed(newer.leftJustified(HttpsDownload::maxBytes - feed("").size()))),
         offer("2.0")},
        {"moved",
         [&](QSslSocket& client) {
             (server_->request.startsWith("GET /feed") ? reply("302 Found", "Location: /moved\r\n", "")
                                                       : good)(client);
         },
         offer("1.10.0")},
        {"not found", reply("404 Not Found", "", feed(newer)), unreadable},
        {"to http", reply("302 Found", insecure, ""), unreadable},
        {"to itself", reply("302 Found", "Location: /feed\r\n", ""), unreadable},
        {"to a file", reply("302 Found", "Location: file:///etc/passwd\r\n", ""), unreadable},
        {"too long",
         reply("200 OK", "", feed(newer.leftJustified(HttpsDownload::maxBytes - feed("").size() + 1))),
         unreadable},
        {"endless", endless("\r\n", QByteArray(500'000, ' '), 0), unreadable},
        {"drop by drop", endless("\r\n", " ", 50), unreadable},
        {"endless headers", endless("X: ", QByteArray(1000, 'x'), 1), unreachable},
        {"silent", [](QSslSocket&) {}, unreachable},
        {"cut short",
         [&](QSslSocket& client) {
             client.write("HTTP/1.1 200 OK\r\nContent-Length: 900\r\n\r\n" + feed(newer));
             client.disconnectFromHost();
         },
         unreadable},
        {"good again", good, offer("1.10.0")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        server_->answer = c.answer;
        told_.clear();
        asked_ = true;
        updates->checkForUpdates();
        EXPECT_FALSE(updates->canCheckForUpdates());
        finish(*updates);
        EXPECT_EQ(told_, std::vector{c.expected});
    }
    EXPECT_EQ(server_->request,
              "GET /feed HTTP/1.1\r\nHost: " + QUrl(server_->url()).authority().toLatin1() +
                  "\r\nUser-Agent: Norvane\r\nAccept-Language: *\r\nAccept-Encoding: identity\r\n"
                  "Connection: Keep-Alive\r\n\r\n");
}

TEST_F(UpdateServiceTest, AsksOnlyWhoeverProvesToBeTheOne) {
    server_->answer = found(item("2.0", page));
    UpdateFeed strangers = feedAt(server_->url());
    strangers.tls.reset();
    const auto distrusting = service(strangers);
    distrusting->start();
    finish(*distrusting);
    EXPECT_EQ(server_->requests, 0);
    for (const QString& url : {QString(), server_->url().replace("https", "http"), QString("https://")}) {
        const auto none = service(feedAt(url));
        none->start();
        none->checkForUpdates();
        EXPECT_FALSE(none->canCheckForUpdates()) << url.toStdString();
    }
    EXPECT_EQ(told_, std::vector<UpdateResult>{});
}

TEST_F(UpdateServiceTest, ChecksByItselfOnceADayAndSpeaksUpOnlyForAnUpdate) {
    server_->answer = reply("404 Not Found", "", "");
    const auto updates = service(feedAt(server_->url()));
    const auto observation = updates->observeCanCheckForUpdates([](bool) {});
    EXPECT_FALSE(updates->canCheckForUpdates());
    updates->start();
    const auto requestsAfter = [&](double hours) {
        time_.advance(hours * 3600);
        finish(*updates);
        return std::exchange(server_->requests, 0);
    };
    EXPECT_EQ(requestsAfter(0), 1);
    EXPECT_EQ(requestsAfter(1), 1) << "again after a failure";
    server_->answer = found(item("1.2.0", page));
    EXPECT_EQ(requestsAfter(1), 1);
    EXPECT_EQ(requestsAfter(23), 0);
    EXPECT_EQ(told_, std::vector<UpdateResult>{});
    server_->answer = found(item("1.3", page));
    EXPECT_EQ(requestsAfter(1), 1);
    EXPECT_EQ(told_, std::vector{offer("1.3")});
    updates->setAutomaticallyChecksForUpdates(false);
    EXPECT_EQ(requestsAfter(48), 0);
    EXPECT_FALSE(service(feedAt(server_->url()))->automaticallyChecksForUpdates());
}

} // namespace

} // namespace norvane
