#pragma once

#include <QSize>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>
#include <variant>

namespace kestrum::gallery {

// What the gallery shows and where its picture goes, from its command line:
//   kestrum-ui-gallery [DOCUMENT.json] [--panel timeline|scoreboard|all] [--appearance light|dark]
//                      [--at SECONDS] [--art-host URL] [--screenshot FILE] [--size WxH] [--page NAME]
//                      [--hover SECONDS] [--open filters|speed|volume]
struct GalleryOptions {
    enum class Panel { timeline, scoreboard, all };
    enum class Page { panels, style, icons, art, images };
    // A pop-up of the strip to open once the window has drawn.
    enum class PopUp { filters, speed, volume };

    static constexpr QSize kDefaultSize{1280, 800};
    static constexpr QSize kSmallestSize{640, 480};

    // A session document to show; absent: the built-in one.
    std::optional<QString> documentPath;
    Panel panel = Panel::all;
    bool dark = false;
    // The playhead's start, in seconds of movie time; absent: the start of the game.
    std::optional<double> atSeconds;
    // The art host (the simulator's stand-in); absent: the setting's default, the real host.
    std::optional<QUrl> artHost;
    std::optional<QString> screenshotPath;
    QSize size = kDefaultSize;
    Page page = Page::panels;
    // Hover the timeline's marker nearest this movie time, once the window has drawn.
    std::optional<double> hoverSeconds;
    std::optional<PopUp> openPopUp;
    bool help = false;

    // The options of `arguments` (the program's name first), or the text of the first mistake.
    static std::variant<GalleryOptions, QString> parse(const QStringList& arguments);
    static QString usage();
};

}  // namespace kestrum::gallery
