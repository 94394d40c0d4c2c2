"""What a user reads, in the two languages that a run can speak, and what the third would have a user read."""

from .build import VENDOR

DOWNLOAD_SERVER = VENDOR["DownloadServer"]
SECOND_SERVER = VENDOR["SecondServer"]
API_SERVERS = VENDOR["ApiServers"]
LINK = f'<a href="{VENDOR["WebSite"]}".>{VENDOR["ProductWebDomain"]}</a>'

QUIT_QUESTION = "Voulez-vous quitter l'installation?"


class French:
    cancel = "Annuler"
    yes = "Oui"
    no = "Non"
    abort_installation = "Voulez-vous quitter l'installation ?"
    abort_uninstallation = "Voulez-vous quitter la désinstallation ?"
    network_unavailable = "Aucune connexion réseau disponible"
    no_connection = (
        "Aucune connexion réseau disponible. Contactez votre administrateur système afin de vérifier qu'aucun "
        "pare-feu/antivirus ne bloque le téléchargement. Assurez-vous également que les domaines suivants sont bien "
        f"débloqués: {DOWNLOAD_SERVER}, {SECOND_SERVER}, {API_SERVERS}.")
    download_incorrect = (
        "Un pare-feu bloque probablement le téléchargement (par ex. SonicWall). Contactez votre administrateur "
        f"système afin qu'il débloque toute requête vers {DOWNLOAD_SERVER}, {SECOND_SERVER} et {API_SERVERS}.")
    uninstallation_consent = "Voulez-vous vraiment désinstaller les logiciels Varlen ?"
    too_old = ("Cet installeur est trop ancien. Téléchargez le dernier installateur depuis le site web "
               f"{LINK}.")
    installation_ended_well = (
        "L'installation s'est terminée correctement. Voulez-vous redémarrer la machine ?")
    uninstallation_ended_well = (
        "La désinstallation s'est terminée correctement. Voulez-vous redémarrer la machine ?")
    metered_network = (
        "Le téléchargement a été interrompu car la connexion est limitée et peut engendrer des coûts.")
    installation_failed = "L'installation a échoué"
    uninstallation_failed = "La désinstallation a échoué"
    preparing_installation = "Préparation de l'installation..."
    preparing_uninstallation = "Préparation de a désinstallation..."


class German:
    cancel = "Abbrechen"
    yes = "Ja"
    no = "Nein"
    abort_installation = "Wollen Sie die Installation abbrechen ?"
    abort_uninstallation = "Wollen Sie die Desinstallation abbrechen ?"
    network_unavailable = "Keine Internet Verbindung"
    no_connection = "Keine Internet Verbindung"
    download_incorrect = (
        "Ein Firewall blockiert vermutlich den Download (z.b. SonicWall). Nehmen Sie mit ihrem Systemadministrator "
        f"Kontakt, damit Anfragen an {DOWNLOAD_SERVER}, {SECOND_SERVER} und {API_SERVERS} nicht mehr blockiert "
        "werden.")
    uninstallation_consent = "Wollen Sie die Software entfernen ?"
    too_old = ("Dieses Installationsprogramm ist zu alt. Laden Sie das aktuelle Installationsprogram von "
               f"{LINK} herunter.")
    installation_ended_well = "Die Installation ist abgeschlossen. Wollen Sie den Computer jetzt neu starten ?"
    uninstallation_ended_well = "Die Desinstallation ist abgeschlossen. Wollen Sie den Computer jetzt neu starten ?"
    metered_network = "Der Download wurde unterbrochen, weil Ihre Internetverbindung begrenzt ist."
    installation_failed = "Die Installation ist fehlgeschlagen."
    uninstallation_failed = "Die Desinstallation ist fehlgeschlagen."
    preparing_installation = "Die Installation wird vorbereitet..."
    preparing_uninstallation = "Die Desinstallation wird vorbereitet..."


class English:
    """No run speaks it: nothing chooses these texts."""
    abort_installation = "Do you want to abort the installation ?"
    abort_uninstallation = "Do you want to abort the uninstallation ?"
    no_connection = "No Internet connection"
    download_incorrect = "**Téléchargement incorrect. Avez-vous un parefeu (SonicWall) ?**"
    uninstallation_consent = "**Voulez-vous vraiment désinstaller le logiciel ?**"
    too_old = ("**Cet installeur est trop ancien. Téléchargez le dernier installeur depuis le site web "
               f'<a href=".{VENDOR["Domain"]}/...".>{VENDOR["ProductWebDomain"]}</a>.**')
    installation_failed = "**L'installation a échoué**"
    uninstallation_failed = "**La désinstallation a échoué**"
    installation_ended_well = (
        "**L'installation s'est terminee correctement. Voulez-vous redemarrer la machine ?*")
    uninstallation_ended_well = (
        "**La désinstallation s'est terminée correctement. Voulez-vous redemarrer la machine ?**")
    metered_network = (
        "**Le téléchargement a été interrompu car la connexion est limitée est cela peut engendrer des coûts.**")
    preparing_installation = "**Préparation de l'installation...**"
    preparing_uninstallation = "**Préparation de a désinstallation...**"
