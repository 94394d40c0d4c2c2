#include "app/LocalizedTexts.h"

namespace orvane {

namespace {

/// An anchor as its texts carry it: shown as plain characters, with a full stop before the closing bracket.
std::string anchor(const std::string& address, const std::string& linkText) {
    return "<a href=\"" + address + "\".>" + linkText + "</a>";
}

void addFrenchTexts(LocalizedTexts& texts, const VendorNames& names) {
    const std::string link = anchor(names.webSite, names.productWebDomain);
    const auto add = [&texts](std::int64_t stringID, const std::string& text) {
        texts[language::kFrench + stringID] = text;
    };
    add(0, "Annuler");
    add(1, "Voulez-vous quitter l'installation ?");
    add(2, "Quitter");
    add(3, "Aucune connexion réseau disponible");
    add(4, "Aucune connexion réseau disponible. Contactez votre administrateur système afin de vérifier "
           "qu'aucun pare-feu/antivirus ne bloque le téléchargement. Assurez-vous également que les domaines "
           "suivants sont bien débloqués: " +
               names.downloadServer + ", " + names.secondServer + ", " + names.apiServers + ".");
    add(5, "Un pare-feu bloque probablement le téléchargement (par ex. SonicWall). Contactez votre "
           "administrateur système afin qu'il débloque toute requête vers " +
               names.downloadServer + ", " + names.secondServer + " et " + names.apiServers + ".");
    add(6, "Voulez-vous démarrer l'installation des logiciels Varlen ?");
    add(7, "Voulez-vous vraiment désinstaller les logiciels Varlen ?");
    add(8, "Voulez-vous quitter la désinstallation ?");
    add(9, "Cet installeur est trop ancien. Téléchargez le dernier installateur depuis le site web " + link +
               ".");
    add(10, "L'installation s'est terminée correctement. Voulez-vous redémarrer la machine ?");
    add(11, "La désinstallation s'est terminée correctement. Voulez-vous redémarrer la machine ?");
    add(12, "Le téléchargement a été interrompu car la connexion est limitée et peut engendrer des coûts.");
    add(13, "Oui");
    add(14, "Non");
    add(15, "L'installation a échoué");
    add(16, "La désinstallation a échoué");
    add(17, "Préparation de l'installation...");
    add(18, "Préparation de a désinstallation...");
    add(19, "Varlen");
}

void addGermanTexts(LocalizedTexts& texts, const VendorNames& names) {
    const std::string link = anchor(names.webSite, names.productWebDomain);
    const auto add = [&texts](std::int64_t stringID, const std::string& text) {
        texts[language::kGerman + stringID] = text;
    };
    add(0, "Abbrechen");
    add(1, "Wollen Sie die Installation abbrechen ?");
    add(2, "Schliessen");
    add(3, "Keine Internet Verbindung");
    add(4, "Keine Internet Verbindung");
    add(5, "Ein Firewall blockiert vermutlich den Download (z.b. SonicWall). Nehmen Sie mit ihrem "
           "Systemadministrator Kontakt, damit Anfragen an " +
               names.downloadServer + ", " + names.secondServer + " und " + names.apiServers +
               " nicht mehr blockiert werden.");
    add(6, "Wollen Sie mit der Installation beginnen ?");
    add(7, "Wollen Sie die Software entfernen ?");
    add(8, "Wollen Sie die Desinstallation abbrechen ?");
    add(9, "Dieses Installationsprogramm ist zu alt. Laden Sie das aktuelle Installationsprogram von " +
               link + " herunter.");
    add(10, "Die Installation ist abgeschlossen. Wollen Sie den Computer jetzt neu starten ?");
    add(11, "Die Desinstallation ist abgeschlossen. Wollen Sie den Computer jetzt neu starten ?");
    add(12, "Der Download wurde unterbrochen, weil Ihre Internetverbindung begrenzt ist.");
    add(13, "Ja");
    add(14, "Nein");
    add(15, "Die Installation ist fehlgeschlagen.");
    add(16, "Die Desinstallation ist fehlgeschlagen.");
    add(17, "Die Installation wird vorbereitet...");
    add(18, "Die Desinstallation wird vorbereitet...");
    add(19, "Varlen");
}

/// Unfinished on purpose: texts between asterisks still wait for their translation.
void addEnglishTexts(LocalizedTexts& texts, const VendorNames& names) {
    const std::string englishLink = anchor("." + names.domain + "/...", names.productWebDomain);
    const auto add = [&texts](std::int64_t stringID, const std::string& text) {
        texts[language::kEnglish + stringID] = text;
    };
    add(0, "Cancel");
    add(1, "Do you want to abort the installation ?");
    add(2, "Close");
    add(3, "No Internet connection");
    add(4, "No Internet connection");
    add(5, "**Téléchargement incorrect. Avez-vous un parefeu (SonicWall) ?**");
    add(6, "**Voulez-vous démarrer l'installation ?**");
    add(7, "**Voulez-vous vraiment désinstaller le logiciel ?**");
    add(8, "Do you want to abort the uninstallation ?");
    add(9, "**Cet installeur est trop ancien. Téléchargez le dernier installeur depuis le site web " +
               englishLink + ".**");
    add(10, "**L'installation s'est terminee correctement. Voulez-vous redemarrer la machine ?*");
    add(11, "**La désinstallation s'est terminée correctement. Voulez-vous redemarrer la machine ?**");
    add(12, "**Le téléchargement a été interrompu car la connexion est limitée est cela peut engendrer des "
            "coûts.**");
    add(13, "Yes");
    add(14, "No");
    add(15, "**L'installation a échoué**");
    add(16, "**La désinstallation a échoué**");
    add(17, "**Préparation de l'installation...**");
    add(18, "**Préparation de a désinstallation...**");
    add(19, "Varlen");
}

} // namespace

LocalizedTexts loadLocalizedTexts(const VendorNames& vendorNames) {
    LocalizedTexts texts;
    addFrenchTexts(texts, vendorNames);
    addGermanTexts(texts, vendorNames);
    addEnglishTexts(texts, vendorNames);
    return texts;
}

} // namespace orvane
