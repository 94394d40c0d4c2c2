#include "platform/CommandTitles.h"

namespace orvane::platform {

CommandTitles commandTitles(std::string_view languageTag, const std::string& program) {
    if (languageTag.starts_with("de")) {
        return {.about = "Über " + program,
                .hide = program + " ausblenden",
                .hideOthers = "Andere ausblenden",
                .showAll = "Alle einblenden",
                .window = "Fenster",
                .minimise = "Im Dock ablegen",
                .close = "Fenster schliessen"};
    }
    return {.about = "À propos de " + program,
            .hide = "Masquer " + program,
            .hideOthers = "Masquer les autres",
            .showAll = "Tout afficher",
            .window = "Fenêtre",
            .minimise = "Placer dans le Dock",
            .close = "Fermer la fenêtre"};
}

} // namespace orvane::platform
