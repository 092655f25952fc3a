#include "ui/kit/ui_engine.h"

#include <QIcon>
#include <QQmlComponent>
#include <QScreen>

#include "ui/kit/pictures/application_icon_provider.h"
#include "ui/kit/pictures/symbol_provider.h"

namespace norvane {

void bringToFront(QWindow& window) {
    window.show();
    window.raise();
    window.requestActivate();
}

void placeInTheMiddle(QWindow& window) {
    QRect place(QPoint(), window.size());
    place.moveCenter(window.screen()->availableGeometry().center());
    window.setPosition(place.topLeft());
}

UiEngine::UiEngine(Theme& theme, const Translator& translator) : theme_(theme), texts_(translator) {}

QQmlEngine& UiEngine::engine() {
    if (!engine_) {
        // Small, seldom open windows: not worth a graphics driver's memory in an idle program.
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        engine_ = std::make_unique<QQmlEngine>();
        engine_->addImportPath("qrc:/qt/qml"); // where the build puts the modules
        giveTo(*engine_, theme_);
        giveTo(*engine_, texts_);
        engine_->addImageProvider("symbol", new SymbolProvider); // which the engine owns
        engine_->addImageProvider("application", new ApplicationIconProvider);
    }
    return *engine_;
}

std::unique_ptr<QQuickWindow> UiEngine::makeWindow(const QString& view, const QVariantMap& properties) {
    QQmlComponent definition(&engine(), QUrl("qrc:/qt/qml/Norvane/" + view + ".qml"));
    std::unique_ptr<QObject> made(definition.createWithInitialProperties(properties));
    for (const QQmlError& error : definition.errors())
        qWarning("%s", qUtf8Printable(error.toString()));
    auto* window = qobject_cast<QQuickWindow*>(made.get());
    if (window) {
        window->setIcon(QIcon(":/icon/org.norvane.Norvane.svg"));
        (void)made.release();
    }
    return std::unique_ptr<QQuickWindow>(window);
}

} // namespace norvane
