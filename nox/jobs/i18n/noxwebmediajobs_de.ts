<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Nox::Conversion</name>
    <message>
        <source>slow: must be converted</source>
        <translation>langsam: muss umgewandelt werden</translation>
    </message>
    <message>
        <source>The video must be converted when it is joined with its audio, which takes long.</source>
        <translation>Das Video muss umgewandelt werden, wenn es mit seinem Ton zusammengefügt wird, und das dauert lange.</translation>
    </message>
    <message>
        <source>The audio must be converted when it is joined with the video.</source>
        <translation>Der Ton muss umgewandelt werden, wenn er mit dem Video zusammengefügt wird.</translation>
    </message>
    <message>
        <source>%1 Rough estimate: less than a minute.</source>
        <translation>%1 Grobe Schätzung: weniger als eine Minute.</translation>
    </message>
    <message>
        <source>%1 Rough estimate: %2 min.</source>
        <translation>%1 Grobe Schätzung: %2 min.</translation>
    </message>
    <message>
        <source>%1 Rough estimate: %2 h.</source>
        <translation>%1 Grobe Schätzung: %2 h.</translation>
    </message>
</context>
<context>
    <name>Nox::Destination</name>
    <message>
        <source>The file needs a name.</source>
        <translation>Die Datei braucht einen Namen.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is a folder.</source>
        <translation>„%1“ ist ein Ordner.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; exists already; an existing file is never replaced.</source>
        <translation>„%1“ gibt es schon; eine vorhandene Datei wird nie ersetzt.</translation>
    </message>
    <message>
        <source>The name is too long: at most %1 characters are allowed.</source>
        <translation>Der Name ist zu lang: Höchstens %1 Zeichen sind möglich.</translation>
    </message>
    <message>
        <source>The name is too long: it takes more than %1 bytes.</source>
        <translation>Der Name ist zu lang: Er belegt mehr als %1 Byte.</translation>
    </message>
    <message>
        <source>The name must not end in a dot.</source>
        <translation>Der Name darf nicht mit einem Punkt enden.</translation>
    </message>
    <message>
        <source>The name must not contain any of / \ : * ? &quot; &lt; &gt; |</source>
        <translation>Der Name darf keines der Zeichen / \ : * ? &quot; &lt; &gt; | enthalten</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; does not exist.</source>
        <translation>Den Ordner „%1“ gibt es nicht.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a folder.</source>
        <translation>„%1“ ist kein Ordner.</translation>
    </message>
    <message>
        <source>You may not write into the folder &quot;%1&quot;.</source>
        <translation>In den Ordner „%1“ dürfen Sie nicht schreiben.</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; cannot be used: the download tool reads %( and %% in its name differently.</source>
        <translation>Der Ordner „%1“ ist nicht verwendbar: Das Download-Werkzeug liest %( und %% in seinem Namen anders.</translation>
    </message>
    <message>
        <source>audio</source>
        <translation>Ton</translation>
    </message>
    <message>
        <source>video</source>
        <translation>Video</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; cannot be used: the download tool takes a $ in its name for a variable.</source>
        <translation>Der Ordner „%1“ ist nicht verwendbar: Das Download-Werkzeug hält ein $ in seinem Namen für eine Variable.</translation>
    </message>
    <message>
        <source>The folder &quot;%1&quot; cannot be used: its name contains a line break or another control character.</source>
        <translation>Der Ordner „%1“ ist nicht verwendbar: Sein Name enthält einen Zeilenumbruch oder ein anderes Steuerzeichen.</translation>
    </message>
</context>
<context>
    <name>Nox::DownloadQueue</name>
    <message>
        <source>%1: %2</source>
        <comment>file, status</comment>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>Nox::DownloadStore</name>
    <message>
        <source>The list of downloads could not be read. It was renamed to &quot;%1&quot;.</source>
        <translation>Die Liste der Downloads war nicht lesbar. Sie wurde als „%1“ beiseitegelegt.</translation>
    </message>
</context>
<context>
    <name>Nox::FailureText</name>
    <message>
        <source>The tool could not be renewed.</source>
        <translation>Das Werkzeug konnte nicht erneuert werden.</translation>
    </message>
    <message>
        <source>The command nox-renew-tool is not installed.</source>
        <translation>Der Befehl nox-renew-tool ist nicht installiert.</translation>
    </message>
    <message>
        <source>The download tool could not be run. Check that the programs beside this one are complete and may be executed, and that memory is not short.</source>
        <translation>Das Download-Werkzeug ließ sich nicht ausführen. Prüfen Sie, ob die Programme neben diesem vollständig und ausführbar sind und ob der Arbeitsspeicher reicht.</translation>
    </message>
    <message>
        <source>Joining video and audio failed: ffmpeg reported an error. Check that there is room on the disk, or choose a stream with sound of its own.</source>
        <translation>Video und Ton ließen sich nicht zusammenfügen: ffmpeg meldet einen Fehler. Prüfen Sie, ob auf dem Datenträger Platz ist, oder wählen Sie einen Stream mit eigenem Ton.</translation>
    </message>
    <message>
        <source>The download tool gave up. Check the network connection and the room on the disk, or choose another stream; the address may have expired, so read the page again.</source>
        <translation>Das Download-Werkzeug hat aufgegeben. Prüfen Sie die Netzverbindung und den Platz auf dem Datenträger, oder wählen Sie einen anderen Stream; die Adresse kann abgelaufen sein, lesen Sie die Seite dann neu.</translation>
    </message>
    <message>
        <source>Joining video and audio failed: ffmpeg crashed or was killed. Try again, or choose a stream with sound of its own.</source>
        <translation>Video und Ton ließen sich nicht zusammenfügen: ffmpeg ist abgestürzt oder wurde beendet. Versuchen Sie es noch einmal, oder wählen Sie einen Stream mit eigenem Ton.</translation>
    </message>
    <message>
        <source>The download tool crashed or was killed. Check that memory is not short, and try again.</source>
        <translation>Das Download-Werkzeug ist abgestürzt oder wurde beendet. Prüfen Sie, ob der Arbeitsspeicher reicht, und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>Joining video and audio failed: ffmpeg could not be run. Check that it stands beside this program and may be executed.</source>
        <translation>Video und Ton ließen sich nicht zusammenfügen: ffmpeg ließ sich nicht ausführen. Prüfen Sie, ob es neben diesem Programm steht und ausführbar ist.</translation>
    </message>
    <message>
        <source>The finished file could not get its final name. Check that its folder still exists and may be written to, and that there is room on the disk.</source>
        <translation>Die fertige Datei konnte ihren endgültigen Namen nicht bekommen. Prüfen Sie, ob es ihren Ordner noch gibt, ob Sie in ihn schreiben dürfen und ob auf dem Datenträger Platz ist.</translation>
    </message>
    <message>
        <source>The download failed for an unknown reason (code %1). The log may contain more details.</source>
        <translation>Der Download ist aus unbekanntem Grund fehlgeschlagen (Code %1). Das Protokoll sagt vielleicht mehr.</translation>
    </message>
    <message>
        <source>The download tool could not read the page. Check the address and the network connection; the page may not be supported.</source>
        <translation>Das Download-Werkzeug konnte die Seite nicht lesen. Prüfen Sie die Adresse und die Netzverbindung; vielleicht wird die Seite nicht unterstützt.</translation>
    </message>
    <message>
        <source>The Python interpreter could not be started. Check that it stands beside this program and may be executed.</source>
        <translation>Der Python-Interpreter ließ sich nicht starten. Prüfen Sie, ob er neben diesem Programm steht und ausführbar ist.</translation>
    </message>
    <message>
        <source>The download tool did not answer in time. Try again.</source>
        <translation>Das Download-Werkzeug hat nicht rechtzeitig geantwortet. Versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>The download tool&apos;s answer could not be read. Try again.</source>
        <translation>Die Antwort des Download-Werkzeugs ließ sich nicht lesen. Versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>The download tool could not be written to. Try again.</source>
        <translation>An das Download-Werkzeug ließ sich nichts übergeben. Versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>The download tool failed for an unknown reason (code %1). The log may contain more details.</source>
        <translation>Das Download-Werkzeug ist aus unbekanntem Grund fehlgeschlagen (Code %1). Das Protokoll sagt vielleicht mehr.</translation>
    </message>
    <message>
        <source>Nothing can be written into &quot;%1&quot; (%2). Check your rights and the room on the disk, or choose another folder.</source>
        <translation>In „%1“ lässt sich nichts schreiben (%2). Prüfen Sie Ihre Rechte und den Platz auf dem Datenträger, oder wählen Sie einen anderen Ordner.</translation>
    </message>
    <message>
        <source>The finished file could not be moved to &quot;%1&quot;. Check that the folder still exists and may be written to.</source>
        <translation>Die fertige Datei ließ sich nicht nach „%1“ verschieben. Prüfen Sie, ob es den Ordner noch gibt und ob Sie in ihn schreiben dürfen.</translation>
    </message>
    <message>
        <source>None of the page&apos;s streams can be downloaded: their format codes cannot be passed to the tool.</source>
        <translation>Keiner der Streams der Seite lässt sich herunterladen: Ihre Formatcodes können dem Download-Werkzeug nicht übergeben werden.</translation>
    </message>
    <message>
        <source>The download tool&apos;s description of the page could not be read. The log may contain more details.</source>
        <translation>Die Beschreibung der Seite durch das Download-Werkzeug ist nicht lesbar. Das Protokoll sagt vielleicht mehr.</translation>
    </message>
    <message>
        <source>The settings of the download tool are not valid. Correct them in the file tool.conf.</source>
        <translation>Die Einstellungen des Download-Werkzeugs sind nicht gültig. Berichtigen Sie sie in der Datei tool.conf.</translation>
    </message>
    <message>
        <source>The download tool does not print its version. Check that its file is complete.</source>
        <translation>Das Download-Werkzeug nennt seine Version nicht. Prüfen Sie, ob seine Datei vollständig ist.</translation>
    </message>
    <message>
        <source>Cancelled.</source>
        <translation>Abgebrochen.</translation>
    </message>
    <message>
        <source>Paused.</source>
        <translation>Angehalten.</translation>
    </message>
    <message>
        <source>The server cannot be reached. Check the network connection, and try again later. If you need a proxy, set it in the file tool.conf.</source>
        <translation>Der Server ist nicht erreichbar. Prüfen Sie die Netzwerkverbindung und versuchen Sie es später noch einmal. Wenn Sie einen Proxy brauchen, tragen Sie ihn in die Datei tool.conf ein.</translation>
    </message>
    <message>
        <source>There is no such page, or its video has been removed. Check the address.</source>
        <translation>Die Seite gibt es nicht, oder ihr Video wurde entfernt. Prüfen Sie die Adresse.</translation>
    </message>
    <message>
        <source>The site requires a login. Name your browser&apos;s cookies or your user name in the file tool.conf, and try again.</source>
        <translation>Die Website verlangt eine Anmeldung. Nennen Sie in der Datei tool.conf die Cookies Ihres Browsers oder Ihren Benutzernamen und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>The site does not offer this video in your country. A proxy in another country can be set in the file tool.conf.</source>
        <translation>Die Website bietet dieses Video in Ihrem Land nicht an. In der Datei tool.conf kann ein Proxy in einem anderen Land eingestellt werden.</translation>
    </message>
    <message>
        <source>The video is protected against copying (DRM). It cannot be downloaded.</source>
        <translation>Das Video ist gegen Kopieren geschützt (DRM). Es lässt sich nicht herunterladen.</translation>
    </message>
    <message>
        <source>The broadcast has not begun yet. Try again when it has.</source>
        <translation>Die Sendung hat noch nicht begonnen. Versuchen Sie es noch einmal, wenn sie begonnen hat.</translation>
    </message>
    <message>
        <source>The page has no video that can be downloaded. Check the address; the site may not be supported.</source>
        <translation>Die Seite enthält kein Video, das sich herunterladen lässt. Prüfen Sie die Adresse; vielleicht wird die Website nicht unterstützt.</translation>
    </message>
    <message>
        <source>The disk is full. Free some space, or choose a folder on another disk.</source>
        <translation>Der Datenträger ist voll. Schaffen Sie Platz oder wählen Sie einen Ordner auf einem anderen Datenträger.</translation>
    </message>
    <message>
        <source>The file cannot be written. Check your rights, or choose another folder or a shorter name.</source>
        <translation>Die Datei lässt sich nicht schreiben. Prüfen Sie Ihre Rechte oder wählen Sie einen anderen Ordner oder einen kürzeren Namen.</translation>
    </message>
    <message>
        <source>The download tool is damaged, incomplete, or made for another version of Python. Install it again.</source>
        <translation>Das Download-Werkzeug ist beschädigt, unvollständig oder für eine andere Python-Version gemacht. Installieren Sie es neu.</translation>
    </message>
    <message>
        <source>The site needs a program that runs its scripts, and there is none. Install deno or Node.js, and try again.</source>
        <translation>Die Website braucht ein Programm, das ihre Skripte ausführt, und es gibt keines. Installieren Sie deno oder Node.js und versuchen Sie es noch einmal.</translation>
    </message>
    <message>
        <source>ffmpeg failed. Choose another stream, or install a newer ffmpeg.</source>
        <translation>ffmpeg ist gescheitert. Wählen Sie einen anderen Stream oder installieren Sie ein neueres ffmpeg.</translation>
    </message>
    <message>
        <source>The stream cannot be downloaded: its format code cannot be passed to the download tool.</source>
        <translation>Der Stream lässt sich nicht herunterladen: Sein Formatcode kann dem Download-Werkzeug nicht übergeben werden.</translation>
    </message>
    <message>
        <source>The stored data of this download cannot be read. Read the page again.</source>
        <translation>Die gespeicherten Daten dieses Downloads sind nicht lesbar. Lesen Sie die Seite neu ein.</translation>
    </message>
</context>
<context>
    <name>Nox::QueuedDownload</name>
    <message>
        <source>Cancelling…</source>
        <translation>Wird abgebrochen …</translation>
    </message>
    <message>
        <source>Finished, %1</source>
        <translation>Fertig, %1</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Fetching video</source>
        <translation>Video wird geladen</translation>
    </message>
    <message>
        <source>Fetching audio</source>
        <translation>Ton wird geladen</translation>
    </message>
    <message>
        <source>Joining video and audio</source>
        <translation>Video und Ton werden zusammengefügt</translation>
    </message>
    <message>
        <source>Starting</source>
        <translation>Wird gestartet</translation>
    </message>
    <message>
        <source>%1 left</source>
        <translation>noch %1</translation>
    </message>
    <message>
        <source>Waiting for other downloads</source>
        <translation>Wartet auf andere Downloads</translation>
    </message>
    <message>
        <source>Failed: %1</source>
        <translation>Fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>The file no longer exists</source>
        <translation>Die Datei ist nicht mehr vorhanden</translation>
    </message>
    <message>
        <source>Reading the page</source>
        <translation>Seite wird gelesen</translation>
    </message>
    <message>
        <source>Pausing…</source>
        <translation>Wird angehalten …</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Converting the sound</source>
        <translation>Ton wird umgewandelt</translation>
    </message>
</context>
<context>
    <name>Nox::ServerWait</name>
    <message>
        <source>The server does not answer. It is asked again in a moment.</source>
        <translation>Der Server antwortet nicht. Er wird gleich noch einmal gefragt.</translation>
    </message>
    <message>
        <source>The server does not answer. It is asked again in %1 s (%2 of %3).</source>
        <translation>Der Server antwortet nicht. Er wird in %1 s noch einmal gefragt (%2 von %3).</translation>
    </message>
</context>
<context>
    <name>Nox::StreamText</name>
    <message>
        <source>audio</source>
        <translation>Ton</translation>
    </message>
    <message>
        <source>3D video only</source>
        <translation>nur 3D-Video</translation>
    </message>
    <message>
        <source>3D video</source>
        <translation>3D-Video</translation>
    </message>
    <message>
        <source>video only</source>
        <translation>nur Video</translation>
    </message>
    <message>
        <source>video</source>
        <translation>Video</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>quality, format code</comment>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>sound only, %1 kbit/s</source>
        <translation>nur Ton, %1 kbit/s</translation>
    </message>
    <message>
        <source>sound only</source>
        <translation>nur Ton</translation>
    </message>
    <message>
        <source>%1p</source>
        <comment>lines of the picture</comment>
        <translation>%1p</translation>
    </message>
    <message>
        <source>without sound</source>
        <translation>ohne Ton</translation>
    </message>
    <message>
        <source>with sound</source>
        <translation>mit Ton</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <comment>quality, with or without sound</comment>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>unknown (%1)</source>
        <comment>format code</comment>
        <translation>unbekannt (%1)</translation>
    </message>
</context>
<context>
    <name>Nox::ToolSetup</name>
    <message>
        <source>The Python interpreter is missing: there is no program &quot;%1&quot;.</source>
        <translation>Der Python-Interpreter fehlt: Es gibt kein Programm „%1“.</translation>
    </message>
    <message>
        <source>The download tool is missing: there is no file &quot;%1&quot;.</source>
        <translation>Das Download-Werkzeug fehlt: Es gibt keine Datei „%1“.</translation>
    </message>
    <message>
        <source>The download tool &quot;%1&quot; cannot be read.</source>
        <translation>Das Download-Werkzeug „%1“ lässt sich nicht lesen.</translation>
    </message>
    <message>
        <source>Streams cannot be joined or encoded: there is no program &quot;%1&quot;.</source>
        <translation>Streams lassen sich nicht zusammenfügen oder umwandeln: Es gibt kein Programm „%1“.</translation>
    </message>
</context>
<context>
    <name>Nox::TransferFigures</name>
    <message>
        <source>%1 / %2</source>
        <translation>%1 / %2</translation>
    </message>
    <message>
        <source>%1/s</source>
        <translation>%1/s</translation>
    </message>
    <message>
        <source>%1x</source>
        <comment>times as fast as it plays</comment>
        <translation>%1x</translation>
    </message>
</context>
<context>
    <name>Nox::UrlCheck</name>
    <message>
        <source>There is no address.</source>
        <translation>Es fehlt eine Adresse.</translation>
    </message>
    <message>
        <source>An address must start with http:// or https://.</source>
        <translation>Eine Adresse muss mit http:// oder https:// beginnen.</translation>
    </message>
    <message>
        <source>An address must not contain blanks.</source>
        <translation>Eine Adresse darf keine Leerzeichen enthalten.</translation>
    </message>
    <message>
        <source>An address must not contain quotes; write %22 or %27 instead.</source>
        <translation>Eine Adresse darf keine Anführungszeichen enthalten; schreiben Sie stattdessen %22 oder %27.</translation>
    </message>
    <message>
        <source>The address is incomplete: a server name must follow http:// or https://.</source>
        <translation>Die Adresse ist unvollständig: Auf http:// oder https:// muss ein Servername folgen.</translation>
    </message>
</context>
</TS>
