<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>ConfirmDownloadSheet</name>
    <message>
        <source>Confirm the Download</source>
        <translation>Laden bestätigen</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;Nein</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Ja</translation>
    </message>
</context>
<context>
    <name>FailedSheet</name>
    <message>
        <source>Download Failed</source>
        <translation>Laden fehlgeschlagen</translation>
    </message>
    <message>
        <source>The firmware was not updated.</source>
        <translation>Die Firmware wurde nicht aktualisiert.</translation>
    </message>
    <message>
        <source>Check that the printer is switched on, connected and not printing, then try again. The system log names the cause.</source>
        <translation>Prüfen Sie, ob der Drucker eingeschaltet und verbunden ist und nicht gerade druckt, und versuchen Sie es noch einmal. Das Systemprotokoll nennt die Ursache.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
</context>
<context>
    <name>MenuBar</name>
    <message>
        <source>Menu bar</source>
        <translation>Menüleiste</translation>
    </message>
    <message>
        <source>&amp;Printer</source>
        <translation>&amp;Drucker</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>&amp;Laden</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
</context>
<context>
    <name>PrinterSelectWindow</name>
    <message>
        <source>Printer Firmware Update</source>
        <translation>Drucker-Firmware aktualisieren</translation>
    </message>
    <message>
        <source>&amp;Select the printer that is to get new firmware:</source>
        <translation>Drucker &amp;auswählen, der neue Firmware erhalten soll:</translation>
    </message>
    <message>
        <source>Printers</source>
        <translation>Drucker</translation>
    </message>
    <message>
        <source>Looking for printers…</source>
        <translation>Drucker werden gesucht …</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Address or serial number</source>
        <translation>Adresse oder Seriennummer</translation>
    </message>
    <message>
        <source>Select a printer first.</source>
        <translation>Wählen Sie zuerst einen Drucker aus.</translation>
    </message>
    <message>
        <source>Download new firmware to the selected printer</source>
        <translation>Neue Firmware auf den ausgewählten Drucker laden</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>&amp;Laden</translation>
    </message>
</context>
<context>
    <name>ProgressSheet</name>
    <message>
        <source>Updating Firmware</source>
        <translation>Firmware wird aktualisiert</translation>
    </message>
    <message>
        <source>New firmware is being downloaded to this printer. It takes a few minutes.</source>
        <translation>Neue Firmware wird auf diesen Drucker geladen. Das dauert einige Minuten.</translation>
    </message>
    <message>
        <source>Download in progress</source>
        <translation>Laden läuft</translation>
    </message>
    <message>
        <source>Do not switch the printer off, and leave it connected until this is done.</source>
        <translation>Schalten Sie den Drucker nicht aus und lassen Sie ihn verbunden, bis dies abgeschlossen ist.</translation>
    </message>
</context>
<context>
    <name>QuitSheet</name>
    <message>
        <source>Quit during a Download</source>
        <translation>Während des Ladens beenden</translation>
    </message>
    <message>
        <source>The download to this printer has not ended. If you quit now, the printer may be left without working firmware.</source>
        <translation>Das Laden auf diesen Drucker ist nicht abgeschlossen. Wenn Sie jetzt beenden, hat der Drucker danach womöglich keine funktionierende Firmware mehr.</translation>
    </message>
    <message>
        <source>&amp;Quit anyway</source>
        <translation>&amp;Trotzdem beenden</translation>
    </message>
    <message>
        <source>&amp;Keep downloading</source>
        <translation>&amp;Weiter laden</translation>
    </message>
</context>
<context>
    <name>UpToDateSheet</name>
    <message>
        <source>Nothing to Update</source>
        <translation>Nichts zu aktualisieren</translation>
    </message>
    <message>
        <source>The printer is up to date.</source>
        <translation>Der Drucker ist auf dem neuesten Stand.</translation>
    </message>
    <message>
        <source>It already runs this firmware or a newer one. Nothing was changed.</source>
        <translation>Er hat bereits diese oder eine neuere Firmware. Es wurde nichts geändert.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
</context>
</TS>
