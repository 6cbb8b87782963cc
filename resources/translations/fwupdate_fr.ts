<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en_US">
<context>
    <name>AboutWindow</name>
    <message>
        <source>About Printer Firmware Update</source>
        <extracomment>Title of a window.</extracomment>
        <translation>À propos de Mise à jour du micrologiciel d’imprimante</translation>
    </message>
    <message>
        <source>Printer Firmware Update</source>
        <extracomment>The name of the program.</extracomment>
        <translation>Mise à jour du micrologiciel d’imprimante</translation>
    </message>
    <message>
        <source>Version %1</source>
        <extracomment>%1 is a number like 1.0.0.</extracomment>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Updates the firmware of Veltra KX350T printers.</source>
        <extracomment>What the program is for.</extracomment>
        <translation>Met à jour le micrologiciel des imprimantes Veltra KX350T.</translation>
    </message>
    <message>
        <source>Free software under the MIT license.</source>
        <extracomment>Below the name of the program.</extracomment>
        <translation>Logiciel libre sous licence MIT.</translation>
    </message>
    <message>
        <source>It uses these libraries:
%1</source>
        <extracomment>%1 is a list of names and versions, each on a line of its own.</extracomment>
        <translation>Il utilise ces bibliothèques&#xa0;:
%1</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the window.</extracomment>
        <translation>&amp;Fermer</translation>
    </message>
</context>
<context>
    <name>ConfirmDownloadSheet</name>
    <message>
        <source>Confirm the Download</source>
        <extracomment>Title of the sheet that asks before a download.</extracomment>
        <translation>Confirmer la mise à jour</translation>
    </message>
    <message>
        <source>Do &amp;not download</source>
        <extracomment>Button: leaves the printer as it is.</extracomment>
        <translation>&amp;Ne pas mettre à jour</translation>
    </message>
    <message>
        <source>&amp;Download firmware</source>
        <extracomment>Button: starts the download.</extracomment>
        <translation>&amp;Mettre à jour</translation>
    </message>
</context>
<context>
    <name>DownloadNotification</name>
    <message>
        <source>Printer updated</source>
        <extracomment>Title of a desktop notification after a download.</extracomment>
        <translation>Imprimante mise à jour</translation>
    </message>
    <message>
        <source>%1 was updated to version %2.</source>
        <extracomment>Text of a desktop notification; %1 is the printer, like &quot;Office (10.0.0.5)&quot;, %2 the number of the firmware&apos;s version.</extracomment>
        <translation>%1&#xa0;: mise à jour vers la version %2 effectuée.</translation>
    </message>
    <message>
        <source>Printer already up to date</source>
        <extracomment>Title of a desktop notification after a download that was not needed.</extracomment>
        <translation>Imprimante déjà à jour</translation>
    </message>
    <message>
        <source>%1 already runs this firmware or a newer one. Nothing was changed.</source>
        <extracomment>Text of a desktop notification; %1 is the printer, like &quot;Office (10.0.0.5)&quot;.</extracomment>
        <translation>%1 utilise déjà ce micrologiciel ou une version plus récente. Rien n’a été modifié.</translation>
    </message>
    <message>
        <source>Printer not updated</source>
        <extracomment>Title of a desktop notification after a download that failed.</extracomment>
        <translation>Imprimante non mise à jour</translation>
    </message>
    <message>
        <source>The firmware of %1 was not updated. The program&apos;s window says what to do.</source>
        <extracomment>Text of a desktop notification; %1 is the printer, like &quot;Office (10.0.0.5)&quot;.</extracomment>
        <translation>Le micrologiciel de %1 n’a pas été mis à jour. La fenêtre du programme indique quoi faire.</translation>
    </message>
</context>
<context>
    <name>DownloadProgress</name>
    <message>
        <source>Sending %1</source>
        <extracomment>what happens now; %1 is an amount of data with its unit, like 8.0 MB</extracomment>
        <translation>Envoi de %1</translation>
    </message>
    <message>
        <source>The printer takes longer than expected to write its memory</source>
        <extracomment>what happens now: the time for it is over, and the printer has not answered</extracomment>
        <translation>L’imprimante met plus de temps que prévu à écrire dans sa mémoire</translation>
    </message>
    <message>
        <source>Connecting to the printer</source>
        <extracomment>what happens now</extracomment>
        <translation>Connexion à l’imprimante</translation>
    </message>
    <message>
        <source>Asking the printer for its version</source>
        <extracomment>what happens now: the version is that of the printer&apos;s firmware</extracomment>
        <translation>Demande de la version à l’imprimante</translation>
    </message>
    <message>
        <source>Choosing the firmware</source>
        <extracomment>what happens now</extracomment>
        <translation>Choix du micrologiciel</translation>
    </message>
    <message>
        <source>The printer has not answered for more than 30 seconds. Check that it is switched on, connected and not busy. No firmware has been sent yet: you can quit and try again.</source>
        <extracomment>advice while a printer is asked for its version</extracomment>
        <translation>L’imprimante ne répond pas depuis plus de 30 secondes. Vérifiez qu’elle est allumée, connectée et inoccupée. Aucun micrologiciel n’a encore été envoyé&#xa0;: vous pouvez quitter et réessayer.</translation>
    </message>
    <message>
        <source>The printer has not taken any data for more than 30 seconds. Leave it switched on, and check that it is connected. If nothing changes in a few minutes, quit and try again.</source>
        <extracomment>advice while firmware is being sent</extracomment>
        <translation>L’imprimante n’a accepté aucune donnée depuis plus de 30 secondes. Laissez-la allumée et vérifiez qu’elle est connectée. Si rien ne change d’ici quelques minutes, quittez et réessayez.</translation>
    </message>
    <message>
        <source>The printer has not answered since it got the firmware. Leave it switched on: it may still be writing. Once it is ready, quit and update it again to see whether it is up to date.</source>
        <extracomment>advice when the printer has all of the firmware, and its time for writing is over</extracomment>
        <translation>L’imprimante n’a pas répondu depuis qu’elle a reçu le micrologiciel. Laissez-la allumée&#xa0;: elle écrit peut-être encore. Dès qu’elle est prête, quittez et relancez la mise à jour pour voir si elle est à jour.</translation>
    </message>
    <message numerus="yes">
        <source>The printer is writing its memory: this may take up to %n second(s)</source>
        <extracomment>what happens now; the time is below a minute</extracomment>
        <translation>
            <numerusform>L’imprimante écrit dans sa mémoire&#xa0;: cela peut durer jusqu’à %n seconde</numerusform>
            <numerusform>L’imprimante écrit dans sa mémoire&#xa0;: cela peut durer jusqu’à %n secondes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The printer is writing its memory: this may take up to %n minute(s)</source>
        <extracomment>what happens now</extracomment>
        <translation>
            <numerusform>L’imprimante écrit dans sa mémoire&#xa0;: cela peut durer jusqu’à %n minute</numerusform>
            <numerusform>L’imprimante écrit dans sa mémoire&#xa0;: cela peut durer jusqu’à %n minutes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FailedSheet</name>
    <message>
        <source>Download Failed</source>
        <extracomment>Title of the alert after a download that failed.</extracomment>
        <translation>Échec de la mise à jour</translation>
    </message>
    <message>
        <source>The firmware was not updated.</source>
        <extracomment>Headline of the alert after a download that failed.</extracomment>
        <translation>Le micrologiciel n’a pas été mis à jour.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the alert after a download that failed.</extracomment>
        <translation>&amp;Fermer</translation>
    </message>
    <message>
        <source>Log of this download</source>
        <extracomment>Name of the text with the log of a failed download, for screen readers.</extracomment>
        <translation>Journal de cette mise à jour</translation>
    </message>
    <message>
        <source>&amp;Details</source>
        <extracomment>Button: shows the log of a failed download in the alert, and hides it again.</extracomment>
        <translation>&amp;Détails</translation>
    </message>
    <message>
        <source>C&amp;opy details</source>
        <extracomment>Button: copies cause and log of a failed download to the clipboard.</extracomment>
        <translation>C&amp;opier les détails</translation>
    </message>
    <message>
        <source>Details c&amp;opied</source>
        <extracomment>The same button when it has copied them.</extracomment>
        <translation>Détails c&amp;opiés</translation>
    </message>
</context>
<context>
    <name>FailureCause</name>
    <message>
        <source>Check that the printer is switched on, connected and not printing, then try again.</source>
        <extracomment>What to do after a failed download.</extracomment>
        <translation>Vérifiez que l’imprimante est allumée, connectée et qu’elle n’imprime pas, puis réessayez.</translation>
    </message>
    <message>
        <source>Check that the printer is switched on and on the same network as this computer, then try again.</source>
        <extracomment>What to do after a failed download to a network printer.</extracomment>
        <translation>Vérifiez que l’imprimante est allumée et sur le même réseau que cet ordinateur, puis réessayez.</translation>
    </message>
    <message>
        <source>Switch the printer off and on, then try again.</source>
        <extracomment>What to do after a failed download.</extracomment>
        <translation>Éteignez puis rallumez l’imprimante, et réessayez.</translation>
    </message>
    <message>
        <source>Wait until the printer has finished its other work, or switch it off and on, then try again.</source>
        <extracomment>What to do after a failed download: wait, or else restart the printer.</extracomment>
        <translation>Attendez que l’imprimante ait terminé ses autres tâches, ou éteignez-la puis rallumez-la, et réessayez.</translation>
    </message>
    <message>
        <source>Install the printer’s firmware again, then try again.</source>
        <extracomment>What to do after a failed download: the firmware file came with a package, and has to be installed once more.</extracomment>
        <translation>Réinstallez le micrologiciel de l’imprimante, puis réessayez.</translation>
    </message>
    <message>
        <source>Install this program again, then try again.</source>
        <extracomment>What to do after a failed download: files of this program are missing or damaged.</extracomment>
        <translation>Réinstallez ce programme, puis réessayez.</translation>
    </message>
    <message>
        <source>Connect the printer’s cable directly to this computer, without a hub, then try again.</source>
        <extracomment>What to do after a failed download to a USB printer.</extracomment>
        <translation>Branchez le câble de l’imprimante directement sur cet ordinateur, sans concentrateur, puis réessayez.</translation>
    </message>
    <message>
        <source>Close other programs, then try again.</source>
        <extracomment>What to do after a failed download: the computer lacks memory or other resources.</extracomment>
        <translation>Fermez d’autres programmes, puis réessayez.</translation>
    </message>
    <message>
        <source>Try again. If it fails again, send a copy of the details to whoever supports this printer.</source>
        <extracomment>What to do after a failed download: &quot;the details&quot; are the part of this window with the log.</extracomment>
        <translation>Réessayez. En cas de nouvel échec, envoyez une copie des détails à l’assistance de cette imprimante.</translation>
    </message>
    <message>
        <source>The connection to the printer was lost.</source>
        <extracomment>Why a download failed: an established connection broke.</extracomment>
        <translation>La connexion à l’imprimante a été perdue.</translation>
    </message>
    <message>
        <source>The printer cannot be reached over the network.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>L’imprimante est injoignable par le réseau.</translation>
    </message>
    <message>
        <source>The printer did not answer.</source>
        <extracomment>Why a download failed: the printer remained silent.</extracomment>
        <translation>L’imprimante n’a pas répondu.</translation>
    </message>
    <message>
        <source>The printer stopped taking data.</source>
        <extracomment>Why a download failed: the printer is connected, and takes no more data.</extracomment>
        <translation>L’imprimante a cessé d’accepter des données.</translation>
    </message>
    <message>
        <source>The printer closed the connection.</source>
        <extracomment>Why a download failed: another computer or program has closed an established connection.</extracomment>
        <translation>L’imprimante a fermé la connexion.</translation>
    </message>
    <message>
        <source>The printer answered something that this program does not understand.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>L’imprimante a envoyé une réponse que ce programme ne comprend pas.</translation>
    </message>
    <message>
        <source>This computer cannot open another connection.</source>
        <extracomment>Why a download failed: too many files or connections are open on this computer.</extracomment>
        <translation>Cet ordinateur ne peut pas ouvrir d’autre connexion.</translation>
    </message>
    <message>
        <source>This computer does not allow the connection.</source>
        <extracomment>Why a download failed: a firewall on this computer, for example.</extracomment>
        <translation>Cet ordinateur n’autorise pas la connexion.</translation>
    </message>
    <message>
        <source>Allow it in the settings of this computer’s firewall, then try again.</source>
        <extracomment>What to do when this computer does not allow the connection to the printer.</extracomment>
        <translation>Autorisez-la dans les réglages du pare-feu de cet ordinateur, puis réessayez.</translation>
    </message>
    <message>
        <source>This computer ran out of memory.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>Cet ordinateur n’a plus assez de mémoire.</translation>
    </message>
    <message>
        <source>This program met an error of its own.</source>
        <extracomment>Why a download failed: a fault of this program, not of the printer.</extracomment>
        <translation>Ce programme a rencontré une erreur interne.</translation>
    </message>
    <message>
        <source>The file with the firmware is missing.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>Le fichier du micrologiciel est introuvable.</translation>
    </message>
    <message>
        <source>The file with the firmware cannot be read.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>Le fichier du micrologiciel ne peut pas être lu.</translation>
    </message>
    <message>
        <source>The file with the firmware is damaged.</source>
        <extracomment>Why a download failed, or why nothing was sent.</extracomment>
        <translation>Le fichier du micrologiciel est endommagé.</translation>
    </message>
    <message>
        <source>Files of this program are missing.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>Des fichiers de ce programme sont introuvables.</translation>
    </message>
    <message>
        <source>You are not permitted to use the printer’s USB connection.</source>
        <extracomment>Why a download failed: the user has no right to open the USB device.</extracomment>
        <translation>Vous n’êtes pas autorisé à utiliser la connexion USB de l’imprimante.</translation>
    </message>
    <message>
        <source>Unplug the printer and plug it in again. If that does not help, ask the administrator of this computer for permission.</source>
        <extracomment>What to do when the user has no right to open the USB device.</extracomment>
        <translation>Débranchez puis rebranchez l’imprimante. Si cela ne suffit pas, demandez l’autorisation à l’administrateur de cet ordinateur.</translation>
    </message>
    <message>
        <source>Another program is using the printer’s USB connection.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>Un autre programme utilise la connexion USB de l’imprimante.</translation>
    </message>
    <message>
        <source>Close programs that print or scan, then try again.</source>
        <extracomment>What to do when another program is using the printer&apos;s USB connection.</extracomment>
        <translation>Fermez les programmes qui impriment ou numérisent, puis réessayez.</translation>
    </message>
    <message>
        <source>The printer was disconnected or switched off.</source>
        <extracomment>Why a download to a USB printer failed.</extracomment>
        <translation>L’imprimante a été débranchée ou éteinte.</translation>
    </message>
    <message>
        <source>Check its cable and switch it on, then try again.</source>
        <extracomment>What to do when a USB printer was disconnected or switched off.</extracomment>
        <translation>Vérifiez son câble et allumez-la, puis réessayez.</translation>
    </message>
    <message>
        <source>The printer offers no USB connection that this program can use.</source>
        <extracomment>Why a download to a USB printer failed: it has no USB interface of the kind for printers.</extracomment>
        <translation>L’imprimante n’offre aucune connexion USB utilisable par ce programme.</translation>
    </message>
    <message>
        <source>The USB connection to the printer failed.</source>
        <extracomment>Why a download to a USB printer failed.</extracomment>
        <translation>La connexion USB à l’imprimante a échoué.</translation>
    </message>
    <message>
        <source>The firmware is larger than this computer allows over USB.</source>
        <extracomment>Why a download to a USB printer failed: the kernel of this computer limits a transfer.</extracomment>
        <translation>Le micrologiciel dépasse la taille que cet ordinateur autorise par USB.</translation>
    </message>
    <message>
        <source>Ask the administrator of this computer to raise “usbcore.usbfs_memory_mb”, then try again.</source>
        <extracomment>What to do when the firmware is larger than this computer allows over USB. The text in quotation marks is a setting and not translated.</extracomment>
        <translation>Demandez à l’administrateur de cet ordinateur d’augmenter «&#xa0;usbcore.usbfs_memory_mb&#xa0;», puis réessayez.</translation>
    </message>
    <message>
        <source>The printer refused the connection.</source>
        <extracomment>Why a download failed: the network printer is there, and takes no connection.</extracomment>
        <translation>L’imprimante a refusé la connexion.</translation>
    </message>
    <message>
        <source>The printer has no address that this program can use.</source>
        <extracomment>Why a download failed: the network printer has an IPv6 address only.</extracomment>
        <translation>L’imprimante n’a pas d’adresse utilisable par ce programme.</translation>
    </message>
    <message>
        <source>Give the printer an IPv4 address in its network settings, then try again.</source>
        <extracomment>What to do when a network printer has an IPv6 address only.</extracomment>
        <translation>Attribuez une adresse IPv4 à l’imprimante dans ses réglages réseau, puis réessayez.</translation>
    </message>
    <message>
        <source>The printer did not say which model it is.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>L’imprimante n’a pas indiqué son modèle.</translation>
    </message>
    <message>
        <source>There is no firmware for this model of printer.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>Il n’existe pas de micrologiciel pour ce modèle d’imprimante.</translation>
    </message>
    <message>
        <source>Ask whoever supports this printer where its firmware is to be had.</source>
        <extracomment>What to do when there is no firmware for a printer.</extracomment>
        <translation>Demandez à l’assistance de cette imprimante où obtenir son micrologiciel.</translation>
    </message>
    <message>
        <source>The printer is no longer in the list.</source>
        <extracomment>Why a download did not begin.</extracomment>
        <translation>L’imprimante n’est plus dans la liste.</translation>
    </message>
    <message>
        <source>Wait until it is back, then try again.</source>
        <extracomment>What to do when a printer went before its download began.</extracomment>
        <translation>Attendez qu’elle réapparaisse, puis réessayez.</translation>
    </message>
    <message>
        <source>Stop it with the command “systemctl stop ipp-usb”, then try again.</source>
        <extracomment>What to do when the service &quot;ipp-usb&quot; is using a USB printer. The text in quotation marks is a command and not translated.</extracomment>
        <translation>Arrêtez-le avec la commande «&#xa0;systemctl stop ipp-usb&#xa0;», puis réessayez.</translation>
    </message>
    <message>
        <source>Stop it with the command “systemctl stop cups”, then try again.</source>
        <extracomment>What to do when the service &quot;cups&quot; is using a USB printer. The text in quotation marks is a command and not translated.</extracomment>
        <translation>Arrêtez-le avec la commande «&#xa0;systemctl stop cups&#xa0;», puis réessayez.</translation>
    </message>
    <message>
        <source>The program %1 is using the printer’s USB connection.</source>
        <extracomment>Why a download failed. %1 is the name of a program.</extracomment>
        <translation>Le programme %1 utilise la connexion USB de l’imprimante.</translation>
    </message>
    <message>
        <source>Close %1, then try again.</source>
        <extracomment>What to do when a program is using the USB connection. %1 is its name.</extracomment>
        <translation>Fermez %1, puis réessayez.</translation>
    </message>
    <message>
        <source>The driver %1 of this computer is using the printer’s USB connection.</source>
        <extracomment>Why a download failed. %1 is the name of a driver of this computer.</extracomment>
        <translation>Le pilote %1 de cet ordinateur utilise la connexion USB de l’imprimante.</translation>
    </message>
    <message>
        <source>Unplug the printer and plug it in again, then try again.</source>
        <extracomment>What to do when a driver of this computer is using a USB printer.</extracomment>
        <translation>Débranchez puis rebranchez l’imprimante, et réessayez.</translation>
    </message>
    <message>
        <source>The printer refused the firmware.</source>
        <extracomment>Why a download failed: the printer has received the firmware and does not want it.</extracomment>
        <translation>L’imprimante a refusé le micrologiciel.</translation>
    </message>
    <message>
        <source>Switch the printer off and on, then try again. If it refuses again, ask whoever supports this printer.</source>
        <extracomment>What to do when the printer refused the firmware.</extracomment>
        <translation>Éteignez puis rallumez l’imprimante, et réessayez. Si elle refuse encore, adressez-vous à l’assistance de cette imprimante.</translation>
    </message>
    <message>
        <source>The printer did not confirm the update.</source>
        <extracomment>Headline of a failed download: the printer has got all of the firmware, and nobody knows whether it has it in its memory now.</extracomment>
        <translation>L’imprimante n’a pas confirmé la mise à jour.</translation>
    </message>
    <message>
        <source>It may still be writing its memory: leave it switched on for a few minutes. Then download the firmware again; a printer that has it is reported as up to date.</source>
        <extracomment>What to do when the printer has got all of the firmware and did not confirm that.</extracomment>
        <translation>Elle écrit peut-être encore dans sa mémoire&#xa0;: laissez-la allumée quelques minutes. Relancez ensuite la mise à jour&#xa0;; une imprimante qui a déjà ce micrologiciel est signalée comme étant à jour.</translation>
    </message>
    <message>
        <source>Nothing was sent to the printer.</source>
        <extracomment>Headline of a download that ended because the file with the firmware is damaged.</extracomment>
        <translation>Rien n’a été envoyé à l’imprimante.</translation>
    </message>
    <message>
        <source>The program %1 is using this printer.</source>
        <extracomment>Why a download failed. %1 is the name of a program and the number of its process, for example &quot;fwupdate (812)&quot;.</extracomment>
        <translation>Le programme %1 utilise cette imprimante.</translation>
    </message>
    <message>
        <source>Wait until it has finished, then try again.</source>
        <extracomment>What to do when another program of this computer is updating the same printer.</extracomment>
        <translation>Attendez qu’il ait terminé, puis réessayez.</translation>
    </message>
    <message>
        <source>Another program is using this printer.</source>
        <extracomment>Why a download failed: which program it is, is not known.</extracomment>
        <translation>Un autre programme utilise cette imprimante.</translation>
    </message>
</context>
<context>
    <name>Localizable</name>
    <message>
        <source>NETWORK_PRINTER_CONFIRMATION</source>
        <extracomment>The question before a download to a network printer. Its English is in Localizable_en.ts.</extracomment>
        <translation>Mettre à jour le micrologiciel de cette imprimante réseau&#xa0;? Personne ne pourra l’utiliser pendant ce temps et elle doit rester allumée.</translation>
    </message>
    <message>
        <source>USB_PRINTER_CONFIRMATION</source>
        <extracomment>The question before a download to a printer on a USB cable. Its English is in Localizable_en.ts.</extracomment>
        <translation>Mettre à jour le micrologiciel de cette imprimante USB&#xa0;? Elle ne pourra pas imprimer pendant ce temps et doit rester allumée et connectée.</translation>
    </message>
    <message>
        <source>A printer is getting new firmware.</source>
        <extracomment>Shown by the desktop, with the program&apos;s name, as what keeps the computer from sleeping or from being shut down.</extracomment>
        <translation>Le micrologiciel d’une imprimante est en cours de mise à jour.</translation>
    </message>
</context>
<context>
    <name>ManualWindow</name>
    <message>
        <source>Manual</source>
        <extracomment>Title of the window that shows the manual, and name of its text.</extracomment>
        <translation>Manuel</translation>
    </message>
    <message>
        <source>&amp;Find:</source>
        <extracomment>Beside the field to search the manual.</extracomment>
        <translation>&amp;Rechercher&#xa0;:</translation>
    </message>
    <message>
        <source>Find in the manual</source>
        <extracomment>Assistive technology says it of the field to search the manual.</extracomment>
        <translation>Rechercher dans le manuel</translation>
    </message>
    <message>
        <source>Not found.</source>
        <extracomment>The manual does not have what was typed.</extracomment>
        <translation>Introuvable.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the window.</extracomment>
        <translation>&amp;Fermer</translation>
    </message>
</context>
<context>
    <name>MenuBar</name>
    <message>
        <source>Menu bar</source>
        <extracomment>What a screen reader calls the menu bar.</extracomment>
        <translation>Barre de menus</translation>
    </message>
    <message>
        <source>&amp;Printer</source>
        <extracomment>Menu: what can be done with the selected printer.</extracomment>
        <translation>&amp;Imprimante</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <extracomment>Menu item: starts the download of new firmware to the selected printer.</extracomment>
        <translation>&amp;Mettre à jour</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <extracomment>Menu item: ends the program.</extracomment>
        <translation>&amp;Quitter</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <extracomment>Menu.</extracomment>
        <translation>Ai&amp;de</translation>
    </message>
    <message>
        <source>&amp;Manual</source>
        <extracomment>Menu item: shows the manual.</extracomment>
        <translation>&amp;Manuel</translation>
    </message>
    <message>
        <source>&amp;Copy diagnostic information</source>
        <extracomment>Menu item: copies what somebody needs to know who is asked for help.</extracomment>
        <translation>&amp;Copier les informations de diagnostic</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <extracomment>Menu item: shows the program&apos;s version, license and libraries.</extracomment>
        <translation>À &amp;propos</translation>
    </message>
</context>
<context>
    <name>OutcomeLine</name>
    <message>
        <source>%1 was updated to version %2 at %3.</source>
        <extracomment>the line below the list; %1 is a printer like &quot;Office (10.0.0.5)&quot;, %3 a time of day</extracomment>
        <translation>%1&#xa0;: mise à jour vers la version %2 effectuée à %3.</translation>
    </message>
</context>
<context>
    <name>PrinterSelectWindow</name>
    <message>
        <source>Printer Firmware Update</source>
        <extracomment>Title of the main window, and the name of the program.</extracomment>
        <translation>Mise à jour du micrologiciel d’imprimante</translation>
    </message>
    <message>
        <source>&amp;Select the printer that is to get new firmware:</source>
        <extracomment>Label above the list of printers.</extracomment>
        <translation>&amp;Sélectionnez l’imprimante qui doit recevoir le nouveau micrologiciel&#xa0;:</translation>
    </message>
    <message>
        <source>Printers</source>
        <extracomment>What a screen reader calls the list of printers.</extracomment>
        <translation>Imprimantes</translation>
    </message>
    <message>
        <source>Looking for printers…</source>
        <extracomment>In the list of printers while it is empty.</extracomment>
        <translation>Recherche d’imprimantes…</translation>
    </message>
    <message>
        <source>Name</source>
        <extracomment>Column of the list: the name of the printer.</extracomment>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Type</source>
        <extracomment>Column of the list: how the printer is connected, &quot;USB&quot; or &quot;Bonjour&quot;.</extracomment>
        <translation>Type</translation>
    </message>
    <message>
        <source>Address or serial number</source>
        <extracomment>Column of the list: the IP address of a network printer, the serial number of a USB printer.</extracomment>
        <translation>Adresse ou numéro de série</translation>
    </message>
    <message>
        <source>Select a printer first.</source>
        <extracomment>Appears when Download is chosen and no printer is selected.</extracomment>
        <translation>Sélectionnez d’abord une imprimante.</translation>
    </message>
    <message>
        <source>Download new firmware to the selected printer</source>
        <extracomment>What a screen reader says of the Download button.</extracomment>
        <translation>Mettre à jour le micrologiciel de l’imprimante sélectionnée</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <extracomment>Button: starts the download of new firmware to the selected printer.</extracomment>
        <translation>&amp;Mettre à jour</translation>
    </message>
    <message>
        <source>No printer has been found yet. Please check:
• The printer is switched on.
• A USB printer: its cable is plugged in at both ends.
• A network printer: it is on the same network as this computer.</source>
        <extracomment>Shown in the empty list after ten seconds, instead of “Looking for printers…”. Four lines.</extracomment>
        <translation>Aucune imprimante trouvée pour le moment. Veuillez vérifier&#xa0;:
• L’imprimante est allumée.
• Imprimante USB&#xa0;: son câble est branché aux deux extrémités.
• Imprimante réseau&#xa0;: elle est sur le même réseau que cet ordinateur.</translation>
    </message>
    <message>
        <source>• The service that finds network printers is not running, so some may be missing. Start avahi-daemon: systemctl start avahi-daemon</source>
        <extracomment>The next line of that list. What stands behind the last colon is a command and stays as it is.</extracomment>
        <translation>• Le service qui trouve les imprimantes réseau n’est pas lancé&#xa0;; il peut donc en manquer. Lancez avahi-daemon&#xa0;: systemctl start avahi-daemon</translation>
    </message>
    <message>
        <source>Diagnostic information was copied.</source>
        <extracomment>Appears when the diagnostic information is on the clipboard.</extracomment>
        <translation>Les informations de diagnostic ont été copiées.</translation>
    </message>
    <message>
        <source>The printer is no longer in the list. Wait until it is back, then try again.</source>
        <extracomment>Appears when the printer left the list while the question about its download was on the screen.</extracomment>
        <translation>L’imprimante n’est plus dans la liste. Attendez qu’elle réapparaisse, puis réessayez.</translation>
    </message>
</context>
<context>
    <name>ProgressSheet</name>
    <message>
        <source>Updating Firmware</source>
        <extracomment>Title of the sheet that is shown during a download.</extracomment>
        <translation>Mise à jour du micrologiciel</translation>
    </message>
    <message>
        <source>Download in progress</source>
        <extracomment>What a screen reader calls the progress bar.</extracomment>
        <translation>Mise à jour en cours</translation>
    </message>
    <message>
        <source>Do not switch the printer off, and leave it connected until this is done.</source>
        <extracomment>Warning below the progress bar.</extracomment>
        <translation>N’éteignez pas l’imprimante et laissez-la connectée jusqu’à la fin de la mise à jour.</translation>
    </message>
</context>
<context>
    <name>QtText</name>
    <message>
        <source>A printer without a name</source>
        <extracomment>in place of a printer&apos;s name in a sentence: &quot;%1 was updated to version ...&quot;</extracomment>
        <translation>Une imprimante sans nom</translation>
    </message>
</context>
<context>
    <name>QuitSheet</name>
    <message>
        <source>Quit during a Download</source>
        <extracomment>Title of the sheet that asks before the program ends during a download.</extracomment>
        <translation>Quitter pendant une mise à jour</translation>
    </message>
    <message>
        <source>The download to this printer has not ended. If you quit now, the printer may be left without working firmware.</source>
        <extracomment>Below the name of the printer, in the sheet that asks before the program ends.</extracomment>
        <translation>La mise à jour de cette imprimante n’est pas terminée. Si vous quittez maintenant, l’imprimante risque de se retrouver sans micrologiciel fonctionnel.</translation>
    </message>
    <message>
        <source>&amp;Quit anyway</source>
        <extracomment>Button: ends the program although a download runs.</extracomment>
        <translation>&amp;Quitter quand même</translation>
    </message>
    <message>
        <source>&amp;Keep downloading</source>
        <extracomment>Button: does not end the program; the download goes on.</extracomment>
        <translation>&amp;Continuer la mise à jour</translation>
    </message>
</context>
<context>
    <name>UpToDateSheet</name>
    <message>
        <source>Nothing to Update</source>
        <extracomment>Title of the alert when the printer needs no new firmware.</extracomment>
        <translation>Rien à mettre à jour</translation>
    </message>
    <message>
        <source>The printer is up to date.</source>
        <extracomment>Headline of the alert when the printer needs no new firmware.</extracomment>
        <translation>L’imprimante est à jour.</translation>
    </message>
    <message>
        <source>It already runs this firmware or a newer one. Nothing was changed.</source>
        <extracomment>Below the headline; &quot;it&quot; is the printer.</extracomment>
        <translation>Elle utilise déjà ce micrologiciel ou une version plus récente. Rien n’a été modifié.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the alert when the printer needs no new firmware.</extracomment>
        <translation>&amp;Fermer</translation>
    </message>
</context>
<context>
    <name>VersionsText</name>
    <message>
        <source>Installed version: %1, available version: %2</source>
        <extracomment>%1 and %2 are numbers of versions of the printer&apos;s firmware</extracomment>
        <translation>Version installée&#xa0;: %1, version disponible&#xa0;: %2</translation>
    </message>
    <message>
        <source>Available version: %1</source>
        <extracomment>%1 is the number of a version; the printer does not tell which one it has</extracomment>
        <translation>Version disponible&#xa0;: %1</translation>
    </message>
</context>
</TS>
