#include "GalleryOptions.h"

#include <QCommandLineParser>
#include <QRegularExpression>

#include <array>
#include <cmath>
#include <utility>

namespace kestrum::gallery {

namespace {

template <class Value, std::size_t count>
std::optional<Value> wordValue(const std::array<std::pair<const char*, Value>, count>& words,
                               const QString& text) {
    for (const auto& [word, value] : words) {
        if (text == QLatin1String(word)) return value;
    }
    return std::nullopt;
}

constexpr std::array<std::pair<const char*, GalleryOptions::Panel>, 3> kPanels{{
    {"timeline", GalleryOptions::Panel::timeline},
    {"scoreboard", GalleryOptions::Panel::scoreboard},
    {"all", GalleryOptions::Panel::all},
}};
constexpr std::array<std::pair<const char*, bool>, 2> kAppearances{{{"light", false}, {"dark", true}}};
constexpr std::array<std::pair<const char*, GalleryOptions::Page>, 5> kPages{{
    {"panels", GalleryOptions::Page::panels},
    {"style", GalleryOptions::Page::style},
    {"icons", GalleryOptions::Page::icons},
    {"art", GalleryOptions::Page::art},
    {"images", GalleryOptions::Page::images},
}};
constexpr std::array<std::pair<const char*, GalleryOptions::PopUp>, 3> kPopUps{{
    {"filters", GalleryOptions::PopUp::filters},
    {"speed", GalleryOptions::PopUp::speed},
    {"volume", GalleryOptions::PopUp::volume},
}};

// Seconds of movie time: a finite number, 0 or more.
std::optional<double> parseSeconds(const QString& text) {
    bool ok = false;
    const double seconds = text.toDouble(&ok);
    if (!ok || !std::isfinite(seconds) || seconds < 0) return std::nullopt;
    return seconds;
}

std::optional<QSize> parseSize(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch()) return std::nullopt;
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    if (size.width() < GalleryOptions::kSmallestSize.width() ||
        size.height() < GalleryOptions::kSmallestSize.height()) {
        return std::nullopt;
    }
    return size;
}

void addOptions(QCommandLineParser& parser) {
    parser.addOptions({
        {QStringLiteral("panel"), QStringLiteral("timeline, scoreboard or all (default)."),
         QStringLiteral("name")},
        {QStringLiteral("appearance"), QStringLiteral("light (default) or dark."), QStringLiteral("name")},
        {QStringLiteral("at"), QStringLiteral("Start the playhead at this movie time."),
         QStringLiteral("seconds")},
        {QStringLiteral("art-host"), QStringLiteral("The art host to load game art from."),
         QStringLiteral("url")},
        {QStringLiteral("screenshot"), QStringLiteral("Write a PNG of the window once drawn, then exit."),
         QStringLiteral("file")},
        {QStringLiteral("size"), QStringLiteral("Window size (default 1280x800)."), QStringLiteral("WxH")},
        {QStringLiteral("page"), QStringLiteral("panels (default), style, icons, art or images."),
         QStringLiteral("name")},
        {QStringLiteral("hover"), QStringLiteral("Hover the timeline's marker nearest this movie time."),
         QStringLiteral("seconds")},
        {QStringLiteral("open"), QStringLiteral("Open a pop-up of the strip: filters, speed or volume."),
         QStringLiteral("name")},
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")},
    });
    parser.addPositionalArgument(QStringLiteral("DOCUMENT.json"),
                                 QStringLiteral("A recording's session document."),
                                 QStringLiteral("[DOCUMENT.json]"));
}

}  // namespace

QString GalleryOptions::usage() {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Shows Kestrum's review panels on a recording's telemetry, and the windows' ground: "
                       "style, icons, art, game art."));
    addOptions(parser);
    return parser.helpText();
}

std::variant<GalleryOptions, QString> GalleryOptions::parse(const QStringList& arguments) {
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments)) return parser.errorText();
    GalleryOptions options;
    options.help = parser.isSet(QStringLiteral("help"));
    const QStringList positional = parser.positionalArguments();
    if (positional.size() > 1) return QStringLiteral("give at most one DOCUMENT.json");
    if (!positional.isEmpty()) options.documentPath = positional.front();
    if (parser.isSet(QStringLiteral("panel"))) {
        const auto panel = wordValue(kPanels, parser.value(QStringLiteral("panel")));
        if (!panel) return QStringLiteral("bad --panel: give timeline, scoreboard or all");
        options.panel = *panel;
    }
    if (parser.isSet(QStringLiteral("appearance"))) {
        const auto dark = wordValue(kAppearances, parser.value(QStringLiteral("appearance")));
        if (!dark) return QStringLiteral("bad --appearance: give light or dark");
        options.dark = *dark;
    }
    if (parser.isSet(QStringLiteral("page"))) {
        const auto page = wordValue(kPages, parser.value(QStringLiteral("page")));
        if (!page) return QStringLiteral("bad --page: give panels, style, icons, art or images");
        options.page = *page;
    }
    if (parser.isSet(QStringLiteral("at"))) {
        options.atSeconds = parseSeconds(parser.value(QStringLiteral("at")));
        if (!options.atSeconds) return QStringLiteral("bad --at: give seconds, 0 or more");
    }
    if (parser.isSet(QStringLiteral("hover"))) {
        options.hoverSeconds = parseSeconds(parser.value(QStringLiteral("hover")));
        if (!options.hoverSeconds) return QStringLiteral("bad --hover: give seconds, 0 or more");
    }
    if (parser.isSet(QStringLiteral("open"))) {
        options.openPopUp = wordValue(kPopUps, parser.value(QStringLiteral("open")));
        if (!options.openPopUp) return QStringLiteral("bad --open: give filters, speed or volume");
    }
    if (parser.isSet(QStringLiteral("art-host"))) {
        const QUrl url(parser.value(QStringLiteral("art-host")), QUrl::StrictMode);
        const bool web = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
        if (!url.isValid() || !web || url.host().isEmpty()) {
            return QStringLiteral(
                "bad --art-host: give an http or https address, such as http://127.0.0.1:8080");
        }
        options.artHost = url;
    }
    if (parser.isSet(QStringLiteral("screenshot"))) {
        if (parser.value(QStringLiteral("screenshot")).isEmpty())
            return QStringLiteral("bad --screenshot: give a file");
        options.screenshotPath = parser.value(QStringLiteral("screenshot"));
    }
    if (parser.isSet(QStringLiteral("size"))) {
        const auto size = parseSize(parser.value(QStringLiteral("size")));
        if (!size) return QStringLiteral("bad --size: give WxH, at least 640x480");
        options.size = *size;
    }
    return options;
}

}  // namespace kestrum::gallery
