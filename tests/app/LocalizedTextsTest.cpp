#include "app/LocalizedTexts.h"

#include "model/TextIdentifiers.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

struct Texts {
    std::int64_t id;
    std::string french;
    std::string german;
    std::string english;
};

/// What the user reads, as the vendor worded it: missing accents, stray characters and untranslated entries
/// included.
const std::vector<Texts>& expectedTexts() {
    static const std::vector<Texts> texts{
        {0, "Annuler", "Abbrechen", "Cancel"},
        {1, "Voulez-vous quitter l'installation ?", "Wollen Sie die Installation abbrechen ?",
         "Do you want to abort the installation ?"},
        {2, "Quitter", "Schliessen", "Close"},
        {3, "Aucune connexion réseau disponible", "Keine Internet Verbindung", "No Internet connection"},
        {4,
         "Aucune connexion réseau disponible. Contactez votre administrateur système afin de vérifier "
         "qu'aucun "
         "pare-feu/antivirus ne bloque le téléchargement. Assurez-vous également que les domaines suivants "
         "sont "
         "bien débloqués: downloads.kestrix.invalid, www.kestrix.invalid, *.kestrix.invalid.",
         "Keine Internet Verbindung", "No Internet connection"},
        {5,
         "Un pare-feu bloque probablement le téléchargement (par ex. SonicWall). Contactez votre "
         "administrateur "
         "système afin qu'il débloque toute requête vers downloads.kestrix.invalid, www.kestrix.invalid et "
         "*.kestrix.invalid.",
         "Ein Firewall blockiert vermutlich den Download (z.b. SonicWall). Nehmen Sie mit ihrem "
         "Systemadministrator Kontakt, damit Anfragen an downloads.kestrix.invalid, www.kestrix.invalid und "
         "*.kestrix.invalid nicht mehr blockiert werden.",
         "**Téléchargement incorrect. Avez-vous un parefeu (SonicWall) ?**"},
        {6, "Voulez-vous démarrer l'installation des logiciels Varlen ?",
         "Wollen Sie mit der Installation beginnen ?", "**Voulez-vous démarrer l'installation ?**"},
        {7, "Voulez-vous vraiment désinstaller les logiciels Varlen ?", "Wollen Sie die Software entfernen ?",
         "**Voulez-vous vraiment désinstaller le logiciel ?**"},
        {8, "Voulez-vous quitter la désinstallation ?", "Wollen Sie die Desinstallation abbrechen ?",
         "Do you want to abort the uninstallation ?"},
        {9,
         "Cet installeur est trop ancien. Téléchargez le dernier installateur depuis le site web "
         R"(<a href="https://www.kestrix.invalid".>varlen.kestrix.invalid</a>.)",
         "Dieses Installationsprogramm ist zu alt. Laden Sie das aktuelle Installationsprogram von "
         R"(<a href="https://www.kestrix.invalid".>varlen.kestrix.invalid</a> herunter.)",
         "**Cet installeur est trop ancien. Téléchargez le dernier installeur depuis le site web "
         R"(<a href=".kestrix.invalid/...".>varlen.kestrix.invalid</a>.**)"},
        {10, "L'installation s'est terminée correctement. Voulez-vous redémarrer la machine ?",
         "Die Installation ist abgeschlossen. Wollen Sie den Computer jetzt neu starten ?",
         "**L'installation s'est terminee correctement. Voulez-vous redemarrer la machine ?*"},
        {11, "La désinstallation s'est terminée correctement. Voulez-vous redémarrer la machine ?",
         "Die Desinstallation ist abgeschlossen. Wollen Sie den Computer jetzt neu starten ?",
         "**La désinstallation s'est terminée correctement. Voulez-vous redemarrer la machine ?**"},
        {12, "Le téléchargement a été interrompu car la connexion est limitée et peut engendrer des coûts.",
         "Der Download wurde unterbrochen, weil Ihre Internetverbindung begrenzt ist.",
         "**Le téléchargement a été interrompu car la connexion est limitée est cela peut engendrer des "
         "coûts.**"},
        {13, "Oui", "Ja", "Yes"},
        {14, "Non", "Nein", "No"},
        {15, "L'installation a échoué", "Die Installation ist fehlgeschlagen.",
         "**L'installation a échoué**"},
        {16, "La désinstallation a échoué", "Die Desinstallation ist fehlgeschlagen.",
         "**La désinstallation a échoué**"},
        {17, "Préparation de l'installation...", "Die Installation wird vorbereitet...",
         "**Préparation de l'installation...**"},
        {18, "Préparation de a désinstallation...", "Die Desinstallation wird vorbereitet...",
         "**Préparation de a désinstallation...**"},
        {19, "Varlen", "Varlen", "Varlen"},
    };
    return texts;
}

VendorNames kestrix() {
    return {
        .downloadServer = "downloads.kestrix.invalid",
        .secondServer = "www.kestrix.invalid",
        .apiServers = "*.kestrix.invalid",
        .webSite = "https://www.kestrix.invalid",
        .domain = "kestrix.invalid",
        .productWebDomain = "varlen.kestrix.invalid",
    };
}

TEST(LocalizedTextsTest, EveryTextStandsCharacterForCharacterInThreeLanguages) {
    LocalizedTexts texts = loadLocalizedTexts(kestrix());
    for (const Texts& expected : expectedTexts()) {
        EXPECT_EQ(texts[1000 + expected.id], expected.french);
        EXPECT_EQ(texts[2000 + expected.id], expected.german);
        EXPECT_EQ(texts[3000 + expected.id], expected.english);
    }
    EXPECT_EQ(texts.size(), 3 * expectedTexts().size());
    EXPECT_EQ(expectedTexts().size(), static_cast<std::size_t>(text::kFirstUnassigned));
}

TEST(LocalizedTextsTest, TheNamesOfTheVendorAreThoseOfTheDeployment) {
    const LocalizedTexts texts = loadLocalizedTexts({
        .downloadServer = "one.example",
        .secondServer = "two.example",
        .apiServers = "*.three.example",
        .webSite = "https://site.example",
        .domain = "domain.example",
        .productWebDomain = "product.example",
    });
    EXPECT_TRUE(texts.at(1004).ends_with("bien débloqués: one.example, two.example, *.three.example."));
    EXPECT_TRUE(texts.at(1005).ends_with("toute requête vers one.example, two.example et *.three.example."));
    EXPECT_TRUE(texts.at(2005).ends_with(
        "one.example, two.example und *.three.example nicht mehr blockiert werden."));
    EXPECT_TRUE(texts.at(1009).ends_with(R"(<a href="https://site.example".>product.example</a>.)"));
    EXPECT_TRUE(texts.at(2009).ends_with(R"(<a href="https://site.example".>product.example</a> herunter.)"));
    EXPECT_TRUE(texts.at(3009).ends_with(R"(<a href=".domain.example/...".>product.example</a>.**)"));
}

} // namespace
} // namespace orvane
