<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pl_PL" sourcelanguage="en_US">
<context>
    <name>ConfirmDownloadSheet</name>
    <message>
        <source>Confirm the Download</source>
        <extracomment>Title of the sheet that asks before a download.</extracomment>
        <translation>Potwierdzenie aktualizacji</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <extracomment>Button: leaves the printer as it is.</extracomment>
        <translation>&amp;Nie</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <extracomment>Button: starts the download.</extracomment>
        <translation>&amp;Tak</translation>
    </message>
</context>
<context>
    <name>FailedSheet</name>
    <message>
        <source>Download Failed</source>
        <extracomment>Title of the alert after a download that failed.</extracomment>
        <translation>Aktualizacja się nie powiodła</translation>
    </message>
    <message>
        <source>The firmware was not updated.</source>
        <extracomment>Headline of the alert after a download that failed.</extracomment>
        <translation>Oprogramowanie sprzętowe nie zostało zaktualizowane.</translation>
    </message>
    <message>
        <source>Check that the printer is switched on, connected and not printing, then try again. The system log names the cause.</source>
        <extracomment>Below the headline: what to do after a download that failed.</extracomment>
        <translation>Należy sprawdzić, czy drukarka jest włączona, podłączona i nie drukuje, a następnie spróbować ponownie. Przyczyna jest podana w dzienniku systemowym.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the alert after a download that failed.</extracomment>
        <translation>&amp;Zamknij</translation>
    </message>
</context>
<context>
    <name>Localizable</name>
    <message>
        <source>NETWORK_PRINTER_CONFIRMATION</source>
        <extracomment>The question before a download to a network printer. Its English is in Localizable_en.ts.</extracomment>
        <translation>Zaktualizować oprogramowanie sprzętowe wybranej drukarki sieciowej? W tym czasie nikt nie będzie mógł na niej drukować i musi ona pozostać włączona.</translation>
    </message>
    <message>
        <source>USB_PRINTER_CONFIRMATION</source>
        <extracomment>The question before a download to a printer on a USB cable. Its English is in Localizable_en.ts.</extracomment>
        <translation>Zaktualizować oprogramowanie sprzętowe wybranej drukarki USB? W tym czasie nie będzie mogła drukować i musi pozostać włączona i podłączona.</translation>
    </message>
</context>
<context>
    <name>MenuBar</name>
    <message>
        <source>Menu bar</source>
        <extracomment>What a screen reader calls the menu bar.</extracomment>
        <translation>Pasek menu</translation>
    </message>
    <message>
        <source>&amp;Printer</source>
        <extracomment>Menu: what can be done with the selected printer.</extracomment>
        <translation>&amp;Drukarka</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <extracomment>Menu item: starts the download of new firmware to the selected printer.</extracomment>
        <translation>&amp;Aktualizuj</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <extracomment>Menu item: ends the program.</extracomment>
        <translation>Za&amp;kończ</translation>
    </message>
</context>
<context>
    <name>PrinterSelectWindow</name>
    <message>
        <source>Printer Firmware Update</source>
        <extracomment>Title of the main window, and the name of the program.</extracomment>
        <translation>Aktualizacja oprogramowania drukarek</translation>
    </message>
    <message>
        <source>&amp;Select the printer that is to get new firmware:</source>
        <extracomment>Label above the list of printers.</extracomment>
        <translation>&amp;Wybierz drukarkę, która ma otrzymać nowe oprogramowanie sprzętowe:</translation>
    </message>
    <message>
        <source>Printers</source>
        <extracomment>What a screen reader calls the list of printers.</extracomment>
        <translation>Drukarki</translation>
    </message>
    <message>
        <source>Looking for printers…</source>
        <extracomment>In the list of printers while it is empty.</extracomment>
        <translation>Wyszukiwanie drukarek…</translation>
    </message>
    <message>
        <source>Name</source>
        <extracomment>Column of the list: the name of the printer.</extracomment>
        <translation>Nazwa</translation>
    </message>
    <message>
        <source>Type</source>
        <extracomment>Column of the list: how the printer is connected, &quot;USB&quot; or &quot;Bonjour&quot;.</extracomment>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Address or serial number</source>
        <extracomment>Column of the list: the IP address of a network printer, the serial number of a USB printer.</extracomment>
        <translation>Adres lub numer seryjny</translation>
    </message>
    <message>
        <source>Select a printer first.</source>
        <extracomment>Appears when Download is chosen and no printer is selected.</extracomment>
        <translation>Najpierw należy wybrać drukarkę.</translation>
    </message>
    <message>
        <source>Download new firmware to the selected printer</source>
        <extracomment>What a screen reader says of the Download button.</extracomment>
        <translation>Aktualizuje oprogramowanie sprzętowe wybranej drukarki</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <extracomment>Button: starts the download of new firmware to the selected printer.</extracomment>
        <translation>&amp;Aktualizuj</translation>
    </message>
</context>
<context>
    <name>ProgressSheet</name>
    <message>
        <source>Updating Firmware</source>
        <extracomment>Title of the sheet that is shown during a download.</extracomment>
        <translation>Aktualizacja oprogramowania</translation>
    </message>
    <message>
        <source>New firmware is being downloaded to this printer. It takes a few minutes.</source>
        <extracomment>Below the name of the printer, during a download.</extracomment>
        <translation>Trwa aktualizacja oprogramowania sprzętowego tej drukarki. Potrwa to kilka minut.</translation>
    </message>
    <message>
        <source>Download in progress</source>
        <extracomment>What a screen reader calls the progress bar.</extracomment>
        <translation>Trwa aktualizacja</translation>
    </message>
    <message>
        <source>Do not switch the printer off, and leave it connected until this is done.</source>
        <extracomment>Warning below the progress bar.</extracomment>
        <translation>Do zakończenia tej operacji nie należy wyłączać ani odłączać drukarki.</translation>
    </message>
</context>
<context>
    <name>QuitSheet</name>
    <message>
        <source>Quit during a Download</source>
        <extracomment>Title of the sheet that asks before the program ends during a download.</extracomment>
        <translation>Zakończenie podczas aktualizacji</translation>
    </message>
    <message>
        <source>The download to this printer has not ended. If you quit now, the printer may be left without working firmware.</source>
        <extracomment>Below the name of the printer, in the sheet that asks before the program ends.</extracomment>
        <translation>Aktualizacja tej drukarki nie została ukończona. Zakończenie teraz może pozostawić drukarkę bez działającego oprogramowania sprzętowego.</translation>
    </message>
    <message>
        <source>&amp;Quit anyway</source>
        <extracomment>Button: ends the program although a download runs.</extracomment>
        <translation>&amp;Zakończ mimo to</translation>
    </message>
    <message>
        <source>&amp;Keep downloading</source>
        <extracomment>Button: does not end the program; the download goes on.</extracomment>
        <translation>&amp;Kontynuuj aktualizację</translation>
    </message>
</context>
<context>
    <name>UpToDateSheet</name>
    <message>
        <source>Nothing to Update</source>
        <extracomment>Title of the alert when the printer needs no new firmware.</extracomment>
        <translation>Nie ma czego aktualizować</translation>
    </message>
    <message>
        <source>The printer is up to date.</source>
        <extracomment>Headline of the alert when the printer needs no new firmware.</extracomment>
        <translation>Drukarka jest aktualna.</translation>
    </message>
    <message>
        <source>It already runs this firmware or a newer one. Nothing was changed.</source>
        <extracomment>Below the headline; &quot;it&quot; is the printer.</extracomment>
        <translation>Ma już to oprogramowanie sprzętowe lub nowsze. Nic nie zostało zmienione.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the alert when the printer needs no new firmware.</extracomment>
        <translation>&amp;Zamknij</translation>
    </message>
</context>
</TS>
