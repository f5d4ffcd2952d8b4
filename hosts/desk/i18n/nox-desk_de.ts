<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>NoxDesk::AddressBar</name>
    <message>
        <source>&amp;Read page</source>
        <translation>Seite &amp;lesen</translation>
    </message>
    <message>
        <source>Address of the page</source>
        <translation>Adresse der Seite</translation>
    </message>
    <message>
        <source>https://… of a page with a video or a sound recording</source>
        <translation>https://… einer Seite mit einem Video oder einer Tonaufnahme</translation>
    </message>
    <message>
        <source>&amp;Address:</source>
        <translation>&amp;Adresse:</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Menu (F10)</source>
        <translation>Menü (F10)</translation>
    </message>
</context>
<context>
    <name>NoxDesk::AddressOfferBar</name>
    <message>
        <source>&amp;Use copied address</source>
        <translation>&amp;Kopierte Adresse verwenden</translation>
    </message>
    <message>
        <source>Dismiss the copied address</source>
        <translation>Kopierte Adresse nicht verwenden</translation>
    </message>
    <message>
        <source>%1 addresses</source>
        <translation>%1 Adressen</translation>
    </message>
    <message>
        <source>Do&amp;wnload all</source>
        <translation>All&amp;e herunterladen</translation>
    </message>
</context>
<context>
    <name>NoxDesk::DeskController</name>
    <message>
        <source>%1 %, %2 of %3</source>
        <comment>percent; ended, all downloads</comment>
        <translation>%1 %, %2 von %3</translation>
    </message>
    <message>
        <source>Download finished</source>
        <translation>Download fertig</translation>
    </message>
    <message>
        <source>Download failed</source>
        <translation>Download fehlgeschlagen</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <comment>file, problem</comment>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Download cancelled</source>
        <translation>Download abgebrochen</translation>
    </message>
    <message>
        <source>Changes of the list of downloads cannot be stored. Is the disk full?</source>
        <translation>Änderungen an der Liste der Downloads können nicht gespeichert werden. Ist der Datenträger voll?</translation>
    </message>
</context>
<context>
    <name>NoxDesk::DownloadPlan</name>
    <message>
        <source>Another download is making this file.</source>
        <translation>Ein anderer Download erzeugt diese Datei gerade.</translation>
    </message>
    <message>
        <source>The file takes %1, but the disk has room for %2 only.</source>
        <translation>Die Datei braucht %1, auf dem Datenträger ist aber nur noch Platz für %2.</translation>
    </message>
    <message>
        <source>The name ends in &quot;.%1&quot;, but the file will be of the format %2.</source>
        <translation>Der Name endet auf „.%1“, die Datei wird aber das Format %2 haben.</translation>
    </message>
</context>
<context>
    <name>NoxDesk::DownloadRow</name>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Open file</source>
        <translation>Datei öffnen</translation>
    </message>
    <message>
        <source>Show in folder</source>
        <translation>Im Ordner zeigen</translation>
    </message>
    <message>
        <source>Progress of %1</source>
        <translation>Fortschritt von %1</translation>
    </message>
    <message>
        <source>Download of %1</source>
        <translation>Download von %1</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <comment>button, file</comment>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; no longer exists.</source>
        <translation>„%1“ ist nicht mehr vorhanden.</translation>
    </message>
    <message>
        <source>No program could be started that opens &quot;%1&quot;.</source>
        <translation>Es konnte kein Programm gestartet werden, das „%1“ öffnet.</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Copy address of the page</source>
        <translation>Adresse der Seite kopieren</translation>
    </message>
    <message>
        <source>Open page in the browser</source>
        <translation>Seite im Browser öffnen</translation>
    </message>
    <message>
        <source>Read page again</source>
        <translation>Seite neu lesen</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Einzelheiten</translation>
    </message>
    <message>
        <source>Remove from the list</source>
        <translation>Aus der Liste entfernen</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Remove from the list, with any partial file</source>
        <translation>Aus der Liste entfernen, auch eine unvollständige Datei</translation>
    </message>
</context>
<context>
    <name>NoxDesk::DownloadsPanel</name>
    <message>
        <source>Remove &amp;ended</source>
        <translation>&amp;Beendete entfernen</translation>
    </message>
    <message>
        <source>Downloads:</source>
        <translation>Downloads:</translation>
    </message>
    <message>
        <source>Downloads</source>
        <translation>Downloads</translation>
    </message>
    <message>
        <source>Ca&amp;ncel all</source>
        <translation>Alle abbre&amp;chen</translation>
    </message>
    <message>
        <source>Cancels running and waiting downloads</source>
        <translation>Bricht laufende und wartende Downloads ab</translation>
    </message>
    <message>
        <source>Pauses running and waiting downloads</source>
        <translation>Hält laufende und wartende Downloads an</translation>
    </message>
    <message>
        <source>Resumes the paused downloads</source>
        <translation>Setzt die angehaltenen Downloads fort</translation>
    </message>
    <message>
        <source>&amp;Pause all</source>
        <translation>Alle anhalte&amp;n</translation>
    </message>
    <message>
        <source>Resume all</source>
        <translation>Alle fortsetzen</translation>
    </message>
    <message>
        <source>Removes ended downloads from the list. Keeps finished files, and failed downloads with a partial file.</source>
        <translation>Entfernt beendete Downloads aus der Liste. Behält fertige Dateien und fehlgeschlagene Downloads mit einer unvollständigen Datei.</translation>
    </message>
</context>
<context>
    <name>NoxDesk::ElidedLabel</name>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
</context>
<context>
    <name>NoxDesk::FailureBox</name>
    <message>
        <source>Show log</source>
        <translation>Protokoll zeigen</translation>
    </message>
    <message>
        <source>Shows the log of the download tool</source>
        <translation>Zeigt das Protokoll des Download-Werkzeugs</translation>
    </message>
    <message>
        <source>Error message</source>
        <translation>Fehlermeldung</translation>
    </message>
    <message>
        <source>Messages of the download tool</source>
        <translation>Meldungen des Download-Werkzeugs</translation>
    </message>
</context>
<context>
    <name>NoxDesk::InfoDialog</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>NoxDesk::LogDialog</name>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Log of the download tool</source>
        <translation>Protokoll des Download-Werkzeugs</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>&amp;Copy all</source>
        <translation>Alles &amp;kopieren</translation>
    </message>
</context>
<context>
    <name>NoxDesk::MainWindow</name>
    <message>
        <source>Nox Desk</source>
        <translation>Nox Desk</translation>
    </message>
    <message>
        <source>&amp;Preferences…</source>
        <translation>&amp;Einstellungen …</translation>
    </message>
    <message>
        <source>&amp;Log…</source>
        <translation>&amp;Protokoll …</translation>
    </message>
    <message>
        <source>Keyboard &amp;shortcuts…</source>
        <translation>&amp;Tastenkürzel …</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>%1 – Nox Desk</source>
        <comment>progress</comment>
        <translation>%1 – Nox Desk</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <comment>what has happened, to which file</comment>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Keyboard shortcuts</source>
        <translation>Tastenkürzel</translation>
    </message>
    <message>
        <source>read the page whose address is on the clipboard</source>
        <translation>die Seite lesen, deren Adresse in der Zwischenablage steht</translation>
    </message>
    <message>
        <source>go to the address</source>
        <translation>zur Adresse gehen</translation>
    </message>
    <message>
        <source>read the page again</source>
        <translation>die Seite noch einmal lesen</translation>
    </message>
    <message>
        <source>stop reading the page</source>
        <translation>das Lesen der Seite abbrechen</translation>
    </message>
    <message>
        <source>download the stream that is chosen</source>
        <translation>den gewählten Stream herunterladen</translation>
    </message>
    <message>
        <source>remove the ended download from the list</source>
        <translation>den beendeten Download aus der Liste entfernen</translation>
    </message>
    <message>
        <source>open the menu</source>
        <translation>das Menü öffnen</translation>
    </message>
    <message>
        <source>quit</source>
        <translation>beenden</translation>
    </message>
    <message>
        <source>About Nox Desk</source>
        <translation>Über Nox Desk</translation>
    </message>
    <message>
        <source>Nox Desk and its library:</source>
        <translation>Nox Desk und seine Bibliothek:</translation>
    </message>
    <message>
        <source>Qt:</source>
        <translation>Qt:</translation>
    </message>
    <message>
        <source>Download tool:</source>
        <translation>Download-Werkzeug:</translation>
    </message>
    <message>
        <source>open the menu of the download, which shows its other keys</source>
        <translation>das Menü des Downloads öffnen, in dem seine weiteren Tasten stehen</translation>
    </message>
    <message>
        <source>&amp;Keep downloading</source>
        <translation>&amp;Weiter herunterladen</translation>
    </message>
    <message>
        <source>&amp;Addresses from a file…</source>
        <translation>&amp;Adressen aus einer Datei …</translation>
    </message>
    <message>
        <source>A&amp;bout…</source>
        <translation>Ü&amp;ber …</translation>
    </message>
    <message>
        <source>Addresses from a file</source>
        <translation>Adressen aus einer Datei</translation>
    </message>
    <message>
        <source>There are no addresses in &quot;%1&quot;.</source>
        <translation>In „%1“ stehen keine Adressen.</translation>
    </message>
    <message>
        <source>The list already has %1 of these pages.</source>
        <translation>Schon in der Liste: %1 von diesen Seiten.</translation>
    </message>
    <message>
        <source>The list already has a download of this stream.</source>
        <translation>In der Liste steht schon ein Download dieses Streams.</translation>
    </message>
    <message>
        <source>Download &amp;again</source>
        <translation>&amp;Noch einmal herunterladen</translation>
    </message>
    <message>
        <source>Downloads still running: %1. Stop them and close?</source>
        <translation>Noch laufende Downloads: %1. Stoppen und schließen?</translation>
    </message>
    <message>
        <source>They stay in the list and can be resumed later.</source>
        <translation>Sie bleiben in der Liste und lassen sich später fortsetzen.</translation>
    </message>
    <message>
        <source>&amp;Stop and close</source>
        <translation>&amp;Stoppen und schließen</translation>
    </message>
</context>
<context>
    <name>NoxDesk::Notifier</name>
    <message>
        <source>Show</source>
        <translation>Zeigen</translation>
    </message>
    <message>
        <source>Nox Desk</source>
        <translation>Nox Desk</translation>
    </message>
    <message>
        <source>%1
Messages before: %2</source>
        <translation>%1
Meldungen davor: %2</translation>
    </message>
</context>
<context>
    <name>NoxDesk::PagePanel</name>
    <message>
        <source>Paste or drop the address of a page above and press Enter.
Its streams appear here, to choose from.</source>
        <translation>Fügen Sie oben die Adresse einer Seite ein, oder ziehen Sie sie hierher, und drücken Sie die Eingabetaste.
Hier erscheinen dann ihre Streams zur Auswahl.</translation>
    </message>
    <message>
        <source>Reading the page…</source>
        <translation>Die Seite wird gelesen …</translation>
    </message>
    <message>
        <source>The page is being read</source>
        <translation>Die Seite wird gelesen</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>Abb&amp;rechen</translation>
    </message>
    <message>
        <source>Duration %1</source>
        <translation>Dauer %1</translation>
    </message>
    <message>
        <source>Duration unknown</source>
        <translation>Dauer unbekannt</translation>
    </message>
    <message>
        <source>Title of the page</source>
        <translation>Titel der Seite</translation>
    </message>
    <message>
        <source>Close &amp;message</source>
        <translation>&amp;Meldung schließen</translation>
    </message>
    <message>
        <source>Warnings of the download tool</source>
        <translation>Warnungen des Download-Werkzeugs</translation>
    </message>
    <message>
        <source>This is still the page before:</source>
        <translation>Dies ist noch die vorige Seite:</translation>
    </message>
    <message>
        <source>This is the first of %1 parts. Choose…</source>
        <translation>Dies ist der erste von %1 Teilen. Auswählen …</translation>
    </message>
    <message>
        <source>This is the first of %1 videos. Choose…</source>
        <translation>Dies ist das erste von %1 Videos. Auswählen …</translation>
    </message>
    <message>
        <source>This is the first of several videos. Choose…</source>
        <translation>Dies ist das erste von mehreren Videos. Auswählen …</translation>
    </message>
</context>
<context>
    <name>NoxDesk::PlanForm</name>
    <message>
        <source>&amp;Browse…</source>
        <translation>D&amp;urchsuchen …</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>&amp;Herunterladen</translation>
    </message>
    <message>
        <source>Sound to join with the picture</source>
        <translation>Ton, der zum Bild gefügt wird</translation>
    </message>
    <message>
        <source>&amp;Sound:</source>
        <translation>&amp;Ton:</translation>
    </message>
    <message>
        <source>File to save to</source>
        <translation>Datei, in die gespeichert wird</translation>
    </message>
    <message>
        <source>&amp;File:</source>
        <translation>&amp;Datei:</translation>
    </message>
    <message>
        <source>The page has none</source>
        <translation>Die Seite hat keinen</translation>
    </message>
    <message>
        <source>Part of the stream</source>
        <translation>Im Stream enthalten</translation>
    </message>
    <message>
        <source>None, the picture only</source>
        <translation>Keiner, nur das Bild</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>Speichern unter</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <comment>container, bit rate</comment>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>Create f&amp;older</source>
        <translation>&amp;Ordner anlegen</translation>
    </message>
    <message>
        <source>The stream has sound only</source>
        <translation>Der Stream enthält nur Ton</translation>
    </message>
    <message>
        <source>unknown quality (%1)</source>
        <translation>unbekannte Qualität (%1)</translation>
    </message>
</context>
<context>
    <name>NoxDesk::PlaylistDialog</name>
    <message>
        <source>&amp;List more</source>
        <translation>&amp;Weitere auflisten</translation>
    </message>
    <message>
        <source>Videos of the page</source>
        <translation>Videos der Seite</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>&amp;Herunterladen</translation>
    </message>
    <message>
        <source>&amp;All</source>
        <translation>&amp;Alle</translation>
    </message>
    <message>
        <source>&amp;None</source>
        <translation>&amp;Keine</translation>
    </message>
    <message>
        <source>%1. %2</source>
        <comment>number, title</comment>
        <translation>%1. %2</translation>
    </message>
    <message>
        <source>%1. %2 (%3)</source>
        <comment>number, title, duration</comment>
        <translation>%1. %2 (%3)</translation>
    </message>
    <message>
        <source>%1 of %2 videos are listed.</source>
        <translation>%1 von %2 Videos sind aufgelistet.</translation>
    </message>
    <message>
        <source>%1 videos are listed.</source>
        <translation>%1 Videos sind aufgelistet.</translation>
    </message>
    <message>
        <source>The videos are being listed…</source>
        <translation>Die Videos werden aufgelistet …</translation>
    </message>
</context>
<context>
    <name>NoxDesk::PreferencesDialog</name>
    <message>
        <source>Renewed: %1</source>
        <translation>Erneuert: %1</translation>
    </message>
    <message>
        <source>Cr&amp;eate folder</source>
        <translation>Ordner an&amp;legen</translation>
    </message>
    <message>
        <source>&amp;MP4 without conversion, where there is one</source>
        <translation>&amp;MP4 ohne Umwandlung, wo es das gibt</translation>
    </message>
    <message>
        <source>S&amp;ound only</source>
        <translation>&amp;Nur Ton</translation>
    </message>
    <message>
        <source>Offer addresses on the &amp;clipboard</source>
        <translation>Adressen aus der &amp;Zwischenablage anbieten</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>&amp;Folder for downloads:</source>
        <translation>&amp;Ordner für Downloads:</translation>
    </message>
    <message>
        <source>Downloads at a &amp;time:</source>
        <translation>&amp;Gleichzeitige Downloads:</translation>
    </message>
    <message>
        <source>Forget the addresses &amp;used</source>
        <translation>Benutzte Adressen &amp;vergessen</translation>
    </message>
    <message>
        <source>Addresses:</source>
        <translation>Adressen:</translation>
    </message>
    <message>
        <source>the best available</source>
        <translation>die beste verfügbare</translation>
    </message>
    <message>
        <source>at most %1p</source>
        <translation>höchstens %1p</translation>
    </message>
    <message>
        <source>&amp;Quality proposed:</source>
        <translation>Vorgeschlagene &amp;Qualität:</translation>
    </message>
    <message>
        <source>the included one</source>
        <translation>das mitgelieferte</translation>
    </message>
    <message>
        <source>&amp;Archive of the download tool:</source>
        <translation>&amp;Archiv des Download-Werkzeugs:</translation>
    </message>
    <message>
        <source>Its version:</source>
        <translation>Seine Version:</translation>
    </message>
    <message>
        <source>Browse…</source>
        <translation>Durchsuchen …</translation>
    </message>
    <message>
        <source>Folder for downloads</source>
        <translation>Ordner für Downloads</translation>
    </message>
    <message>
        <source>Archive of the download tool</source>
        <translation>Archiv des Download-Werkzeugs</translation>
    </message>
    <message>
        <source>Browse for the folder</source>
        <translation>Ordner auswählen</translation>
    </message>
    <message>
        <source>Browse for the archive</source>
        <translation>Archiv auswählen</translation>
    </message>
    <message>
        <source>Convert sound without a picture to MP&amp;3</source>
        <translation>Ton ohne Bild in MP&amp;3 umwandeln</translation>
    </message>
    <message>
        <source>&amp;Resume unfinished downloads when the program starts</source>
        <translation>Beim Start unfertige Downloads &amp;fortsetzen</translation>
    </message>
    <message>
        <source>none; or bytes per second, such as 500K or 2M</source>
        <translation>keine; oder Bytes pro Sekunde, etwa 500K oder 2M</translation>
    </message>
    <message>
        <source>proxy of the system; or socks5://127.0.0.1:9050</source>
        <translation>Proxy des Systems; oder socks5://127.0.0.1:9050</translation>
    </message>
    <message>
        <source>&amp;Proxy:</source>
        <translation>&amp;Proxy:</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keinem</translation>
    </message>
    <message>
        <source>Cookies from the &amp;browser:</source>
        <translation>Cookies aus dem &amp;Browser:</translation>
    </message>
    <message>
        <source>When the tool was renewed</source>
        <translation>Wann das Werkzeug erneuert wurde</translation>
    </message>
    <message>
        <source>Fetching the newest tool…</source>
        <translation>Das neueste Werkzeug wird geholt …</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>It came with the program.</source>
        <translation>Es kam mit dem Programm.</translation>
    </message>
    <message>
        <source>It was renewed on %1.</source>
        <translation>Es wurde am %1 erneuert.</translation>
    </message>
    <message>
        <source>Rene&amp;w the tool</source>
        <translation>Werkzeug &amp;erneuern</translation>
    </message>
    <message>
        <source>The settings of the tool cannot be written to &quot;%1&quot;.</source>
        <translation>Die Einstellungen des Werkzeugs können nicht in „%1“ geschrieben werden.</translation>
    </message>
    <message>
        <source>Speed &amp;limit per download:</source>
        <translation>&amp;Höchstgeschwindigkeit je Download:</translation>
    </message>
    <message>
        <source>The speed limit must be a number, such as 500K or 2.5M.</source>
        <translation>Die Höchstgeschwindigkeit muss eine Zahl sein, etwa 500K oder 2.5M.</translation>
    </message>
</context>
<context>
    <name>NoxDesk::StreamPanel</name>
    <message>
        <source>Show a&amp;ll</source>
        <translation>Alle zei&amp;gen</translation>
    </message>
    <message>
        <source>Shows streams that differ little from others, too</source>
        <translation>Zeigt auch Streams, die sich von anderen kaum unterscheiden</translation>
    </message>
    <message>
        <source>S&amp;treams:</source>
        <translation>&amp;Streams:</translation>
    </message>
    <message>
        <source>Streams of the page</source>
        <translation>Streams der Seite</translation>
    </message>
    <message>
        <source>Copy address of the stream</source>
        <translation>Adresse des Streams kopieren</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>S&amp;treams of the page before:</source>
        <translation>&amp;Streams der vorigen Seite:</translation>
    </message>
</context>
<context>
    <name>NoxDesk::StreamTableModel</name>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>%1 (DASH)</source>
        <translation>%1 (DASH)</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>Qualität</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Größe</translation>
    </message>
    <message>
        <source>⚠ %1; %2</source>
        <comment>stream, mark</comment>
        <translation>⚠ %1; %2</translation>
    </message>
    <message>
        <source>Stream</source>
        <translation>Stream</translation>
    </message>
    <message>
        <source>unknown quality, %1</source>
        <comment>with or without sound</comment>
        <translation>unbekannte Qualität, %1</translation>
    </message>
</context>
<context>
    <name>NoxDesk::ThumbnailView</name>
    <message>
        <source>No picture of the page</source>
        <translation>Kein Bild der Seite</translation>
    </message>
    <message>
        <source>Picture of the page</source>
        <translation>Bild der Seite</translation>
    </message>
</context>
<context>
    <name>NoxDesk::ToolVersionLabel</name>
    <message>
        <source>asking the tool…</source>
        <translation>Das Werkzeug wird gefragt …</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <source>Downloads videos from web pages.</source>
        <translation>Lädt Videos von Webseiten herunter.</translation>
    </message>
    <message>
        <source>Page to read at once.</source>
        <translation>Seite, die sofort gelesen wird.</translation>
    </message>
    <message>
        <source>Open a window of its own, also when there is one already.</source>
        <translation>Ein eigenes Fenster öffnen, auch wenn es schon eines gibt.</translation>
    </message>
</context>
</TS>
