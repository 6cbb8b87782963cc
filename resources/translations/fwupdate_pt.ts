<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR" sourcelanguage="en_US">
<context>
    <name>AboutWindow</name>
    <message>
        <source>About Printer Firmware Update</source>
        <extracomment>Title of a window.</extracomment>
        <translation>Sobre a Atualização de firmware de impressoras</translation>
    </message>
    <message>
        <source>Printer Firmware Update</source>
        <extracomment>The name of the program.</extracomment>
        <translation>Atualização de firmware de impressoras</translation>
    </message>
    <message>
        <source>Version %1</source>
        <extracomment>%1 is a number like 1.0.0.</extracomment>
        <translation>Versão %1</translation>
    </message>
    <message>
        <source>Updates the firmware of Veltra KX350T printers.</source>
        <extracomment>What the program is for.</extracomment>
        <translation>Atualiza o firmware das impressoras Veltra KX350T.</translation>
    </message>
    <message>
        <source>Free software under the MIT license.</source>
        <extracomment>Below the name of the program.</extracomment>
        <translation>Software livre sob a licença MIT.</translation>
    </message>
    <message>
        <source>It uses these libraries:
%1</source>
        <extracomment>%1 is a list of names and versions, each on a line of its own.</extracomment>
        <translation>Usa estas bibliotecas:
%1</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the window.</extracomment>
        <translation>&amp;Fechar</translation>
    </message>
</context>
<context>
    <name>ConfirmDownloadSheet</name>
    <message>
        <source>Confirm the Download</source>
        <extracomment>Title of the sheet that asks before a download.</extracomment>
        <translation>Confirmar a atualização</translation>
    </message>
    <message>
        <source>Do &amp;not download</source>
        <extracomment>Button: leaves the printer as it is.</extracomment>
        <translation>&amp;Não atualizar</translation>
    </message>
    <message>
        <source>&amp;Download firmware</source>
        <extracomment>Button: starts the download.</extracomment>
        <translation>&amp;Atualizar firmware</translation>
    </message>
</context>
<context>
    <name>DownloadNotification</name>
    <message>
        <source>Printer updated</source>
        <extracomment>Title of a desktop notification after a download.</extracomment>
        <translation>Impressora atualizada</translation>
    </message>
    <message>
        <source>%1 was updated to version %2.</source>
        <extracomment>Text of a desktop notification; %1 is the printer, like &quot;Office (10.0.0.5)&quot;, %2 the number of the firmware&apos;s version.</extracomment>
        <translation>%1 foi atualizada para a versão %2.</translation>
    </message>
    <message>
        <source>Printer already up to date</source>
        <extracomment>Title of a desktop notification after a download that was not needed.</extracomment>
        <translation>A impressora já está atualizada</translation>
    </message>
    <message>
        <source>%1 already runs this firmware or a newer one. Nothing was changed.</source>
        <extracomment>Text of a desktop notification; %1 is the printer, like &quot;Office (10.0.0.5)&quot;.</extracomment>
        <translation>%1 já usa este firmware ou um mais recente. Nada foi alterado.</translation>
    </message>
    <message>
        <source>Printer not updated</source>
        <extracomment>Title of a desktop notification after a download that failed.</extracomment>
        <translation>Impressora não atualizada</translation>
    </message>
    <message>
        <source>The firmware of %1 was not updated. The program&apos;s window says what to do.</source>
        <extracomment>Text of a desktop notification; %1 is the printer, like &quot;Office (10.0.0.5)&quot;.</extracomment>
        <translation>O firmware de %1 não foi atualizado. A janela do programa informa o que fazer.</translation>
    </message>
</context>
<context>
    <name>DownloadProgress</name>
    <message>
        <source>Sending %1</source>
        <extracomment>what happens now; %1 is an amount of data with its unit, like 8.0 MB</extracomment>
        <translation>Enviando %1</translation>
    </message>
    <message>
        <source>The printer takes longer than expected to write its memory</source>
        <extracomment>what happens now: the time for it is over, and the printer has not answered</extracomment>
        <translation>A impressora está demorando mais que o esperado para gravar a memória</translation>
    </message>
    <message>
        <source>Connecting to the printer</source>
        <extracomment>what happens now</extracomment>
        <translation>Conectando à impressora</translation>
    </message>
    <message>
        <source>Asking the printer for its version</source>
        <extracomment>what happens now: the version is that of the printer&apos;s firmware</extracomment>
        <translation>Consultando a versão da impressora</translation>
    </message>
    <message>
        <source>Choosing the firmware</source>
        <extracomment>what happens now</extracomment>
        <translation>Escolhendo o firmware</translation>
    </message>
    <message>
        <source>The printer has not answered for more than 30 seconds. Check that it is switched on, connected and not busy. No firmware has been sent yet: you can quit and try again.</source>
        <extracomment>advice while a printer is asked for its version</extracomment>
        <translation>A impressora não responde há mais de 30 segundos. Verifique se ela está ligada, conectada e desocupada. Nenhum firmware foi enviado ainda: você pode sair e tentar novamente.</translation>
    </message>
    <message>
        <source>The printer has not taken any data for more than 30 seconds. Leave it switched on, and check that it is connected. If nothing changes in a few minutes, quit and try again.</source>
        <extracomment>advice while firmware is being sent</extracomment>
        <translation>A impressora não aceita dados há mais de 30 segundos. Deixe-a ligada e verifique se está conectada. Se nada mudar em alguns minutos, saia e tente novamente.</translation>
    </message>
    <message>
        <source>The printer has not answered since it got the firmware. Leave it switched on: it may still be writing. Once it is ready, quit and update it again to see whether it is up to date.</source>
        <extracomment>advice when the printer has all of the firmware, and its time for writing is over</extracomment>
        <translation>A impressora não respondeu desde que recebeu o firmware. Deixe-a ligada: ela ainda pode estar gravando. Quando estiver pronta, saia e atualize-a de novo para ver se está atualizada.</translation>
    </message>
    <message numerus="yes">
        <source>The printer is writing its memory: this may take up to %n second(s)</source>
        <extracomment>what happens now; the time is below a minute</extracomment>
        <translation>
            <numerusform>A impressora está gravando a memória: isso pode levar até %n segundo</numerusform>
            <numerusform>A impressora está gravando a memória: isso pode levar até %n segundos</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The printer is writing its memory: this may take up to %n minute(s)</source>
        <extracomment>what happens now</extracomment>
        <translation>
            <numerusform>A impressora está gravando a memória: isso pode levar até %n minuto</numerusform>
            <numerusform>A impressora está gravando a memória: isso pode levar até %n minutos</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FailedSheet</name>
    <message>
        <source>Download Failed</source>
        <extracomment>Title of the alert after a download that failed.</extracomment>
        <translation>Falha na atualização</translation>
    </message>
    <message>
        <source>The firmware was not updated.</source>
        <extracomment>Headline of the alert after a download that failed.</extracomment>
        <translation>O firmware não foi atualizado.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the alert after a download that failed.</extracomment>
        <translation>&amp;Fechar</translation>
    </message>
    <message>
        <source>Log of this download</source>
        <extracomment>Name of the text with the log of a failed download, for screen readers.</extracomment>
        <translation>Log desta atualização</translation>
    </message>
    <message>
        <source>&amp;Details</source>
        <extracomment>Button: shows the log of a failed download in the alert, and hides it again.</extracomment>
        <translation>&amp;Detalhes</translation>
    </message>
    <message>
        <source>C&amp;opy details</source>
        <extracomment>Button: copies cause and log of a failed download to the clipboard.</extracomment>
        <translation>C&amp;opiar detalhes</translation>
    </message>
    <message>
        <source>Details c&amp;opied</source>
        <extracomment>The same button when it has copied them.</extracomment>
        <translation>Detalhes c&amp;opiados</translation>
    </message>
</context>
<context>
    <name>FailureCause</name>
    <message>
        <source>Check that the printer is switched on, connected and not printing, then try again.</source>
        <extracomment>What to do after a failed download.</extracomment>
        <translation>Verifique se a impressora está ligada, conectada e sem imprimir e tente novamente.</translation>
    </message>
    <message>
        <source>Check that the printer is switched on and on the same network as this computer, then try again.</source>
        <extracomment>What to do after a failed download to a network printer.</extracomment>
        <translation>Verifique se a impressora está ligada e na mesma rede que este computador e tente novamente.</translation>
    </message>
    <message>
        <source>Switch the printer off and on, then try again.</source>
        <extracomment>What to do after a failed download.</extracomment>
        <translation>Desligue e ligue a impressora e tente novamente.</translation>
    </message>
    <message>
        <source>Wait until the printer has finished its other work, or switch it off and on, then try again.</source>
        <extracomment>What to do after a failed download: wait, or else restart the printer.</extracomment>
        <translation>Espere até que a impressora termine os outros trabalhos, ou desligue-a e ligue-a, e tente novamente.</translation>
    </message>
    <message>
        <source>Install the printer’s firmware again, then try again.</source>
        <extracomment>What to do after a failed download: the firmware file came with a package, and has to be installed once more.</extracomment>
        <translation>Instale novamente o firmware da impressora e tente outra vez.</translation>
    </message>
    <message>
        <source>Install this program again, then try again.</source>
        <extracomment>What to do after a failed download: files of this program are missing or damaged.</extracomment>
        <translation>Instale este programa novamente e tente outra vez.</translation>
    </message>
    <message>
        <source>Connect the printer’s cable directly to this computer, without a hub, then try again.</source>
        <extracomment>What to do after a failed download to a USB printer.</extracomment>
        <translation>Conecte o cabo da impressora diretamente a este computador, sem hub, e tente novamente.</translation>
    </message>
    <message>
        <source>Close other programs, then try again.</source>
        <extracomment>What to do after a failed download: the computer lacks memory or other resources.</extracomment>
        <translation>Feche outros programas e tente novamente.</translation>
    </message>
    <message>
        <source>Try again. If it fails again, send a copy of the details to whoever supports this printer.</source>
        <extracomment>What to do after a failed download: &quot;the details&quot; are the part of this window with the log.</extracomment>
        <translation>Tente novamente. Se falhar outra vez, envie uma cópia dos detalhes ao suporte desta impressora.</translation>
    </message>
    <message>
        <source>The connection to the printer was lost.</source>
        <extracomment>Why a download failed: an established connection broke.</extracomment>
        <translation>A conexão com a impressora foi perdida.</translation>
    </message>
    <message>
        <source>The printer cannot be reached over the network.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>Não é possível acessar a impressora pela rede.</translation>
    </message>
    <message>
        <source>The printer did not answer.</source>
        <extracomment>Why a download failed: the printer remained silent.</extracomment>
        <translation>A impressora não respondeu.</translation>
    </message>
    <message>
        <source>The printer stopped taking data.</source>
        <extracomment>Why a download failed: the printer is connected, and takes no more data.</extracomment>
        <translation>A impressora parou de aceitar dados.</translation>
    </message>
    <message>
        <source>The printer closed the connection.</source>
        <extracomment>Why a download failed: another computer or program has closed an established connection.</extracomment>
        <translation>A impressora fechou a conexão.</translation>
    </message>
    <message>
        <source>The printer answered something that this program does not understand.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>A impressora respondeu algo que este programa não entende.</translation>
    </message>
    <message>
        <source>This computer cannot open another connection.</source>
        <extracomment>Why a download failed: too many files or connections are open on this computer.</extracomment>
        <translation>Este computador não consegue abrir outra conexão.</translation>
    </message>
    <message>
        <source>This computer does not allow the connection.</source>
        <extracomment>Why a download failed: a firewall on this computer, for example.</extracomment>
        <translation>Este computador não permite a conexão.</translation>
    </message>
    <message>
        <source>Allow it in the settings of this computer’s firewall, then try again.</source>
        <extracomment>What to do when this computer does not allow the connection to the printer.</extracomment>
        <translation>Permita-a nas configurações do firewall deste computador e tente novamente.</translation>
    </message>
    <message>
        <source>This computer ran out of memory.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>A memória deste computador se esgotou.</translation>
    </message>
    <message>
        <source>This program met an error of its own.</source>
        <extracomment>Why a download failed: a fault of this program, not of the printer.</extracomment>
        <translation>Ocorreu um erro interno neste programa.</translation>
    </message>
    <message>
        <source>The file with the firmware is missing.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>O arquivo do firmware está faltando.</translation>
    </message>
    <message>
        <source>The file with the firmware cannot be read.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>Não é possível ler o arquivo do firmware.</translation>
    </message>
    <message>
        <source>The file with the firmware is damaged.</source>
        <extracomment>Why a download failed, or why nothing was sent.</extracomment>
        <translation>O arquivo do firmware está danificado.</translation>
    </message>
    <message>
        <source>Files of this program are missing.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>Faltam arquivos deste programa.</translation>
    </message>
    <message>
        <source>You are not permitted to use the printer’s USB connection.</source>
        <extracomment>Why a download failed: the user has no right to open the USB device.</extracomment>
        <translation>Você não tem permissão para usar a conexão USB da impressora.</translation>
    </message>
    <message>
        <source>Unplug the printer and plug it in again. If that does not help, ask the administrator of this computer for permission.</source>
        <extracomment>What to do when the user has no right to open the USB device.</extracomment>
        <translation>Desconecte a impressora e conecte-a novamente. Se isso não ajudar, peça permissão ao administrador deste computador.</translation>
    </message>
    <message>
        <source>Another program is using the printer’s USB connection.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>Outro programa está usando a conexão USB da impressora.</translation>
    </message>
    <message>
        <source>Close programs that print or scan, then try again.</source>
        <extracomment>What to do when another program is using the printer&apos;s USB connection.</extracomment>
        <translation>Feche os programas que imprimem ou digitalizam e tente novamente.</translation>
    </message>
    <message>
        <source>The printer was disconnected or switched off.</source>
        <extracomment>Why a download to a USB printer failed.</extracomment>
        <translation>A impressora foi desconectada ou desligada.</translation>
    </message>
    <message>
        <source>Check its cable and switch it on, then try again.</source>
        <extracomment>What to do when a USB printer was disconnected or switched off.</extracomment>
        <translation>Verifique o cabo, ligue-a e tente novamente.</translation>
    </message>
    <message>
        <source>The printer offers no USB connection that this program can use.</source>
        <extracomment>Why a download to a USB printer failed: it has no USB interface of the kind for printers.</extracomment>
        <translation>A impressora não oferece nenhuma conexão USB que este programa possa usar.</translation>
    </message>
    <message>
        <source>The USB connection to the printer failed.</source>
        <extracomment>Why a download to a USB printer failed.</extracomment>
        <translation>A conexão USB com a impressora falhou.</translation>
    </message>
    <message>
        <source>The firmware is larger than this computer allows over USB.</source>
        <extracomment>Why a download to a USB printer failed: the kernel of this computer limits a transfer.</extracomment>
        <translation>O firmware é maior do que este computador permite via USB.</translation>
    </message>
    <message>
        <source>Ask the administrator of this computer to raise “usbcore.usbfs_memory_mb”, then try again.</source>
        <extracomment>What to do when the firmware is larger than this computer allows over USB. The text in quotation marks is a setting and not translated.</extracomment>
        <translation>Peça ao administrador deste computador que aumente “usbcore.usbfs_memory_mb” e tente novamente.</translation>
    </message>
    <message>
        <source>The printer refused the connection.</source>
        <extracomment>Why a download failed: the network printer is there, and takes no connection.</extracomment>
        <translation>A impressora recusou a conexão.</translation>
    </message>
    <message>
        <source>The printer has no address that this program can use.</source>
        <extracomment>Why a download failed: the network printer has an IPv6 address only.</extracomment>
        <translation>A impressora não tem um endereço que este programa possa usar.</translation>
    </message>
    <message>
        <source>Give the printer an IPv4 address in its network settings, then try again.</source>
        <extracomment>What to do when a network printer has an IPv6 address only.</extracomment>
        <translation>Atribua à impressora um endereço IPv4 nas configurações de rede dela e tente novamente.</translation>
    </message>
    <message>
        <source>The printer did not say which model it is.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>A impressora não informou qual é o seu modelo.</translation>
    </message>
    <message>
        <source>There is no firmware for this model of printer.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>Não há firmware para este modelo de impressora.</translation>
    </message>
    <message>
        <source>Ask whoever supports this printer where its firmware is to be had.</source>
        <extracomment>What to do when there is no firmware for a printer.</extracomment>
        <translation>Pergunte ao suporte desta impressora onde obter o firmware.</translation>
    </message>
    <message>
        <source>The printer is no longer in the list.</source>
        <extracomment>Why a download did not begin.</extracomment>
        <translation>A impressora não está mais na lista.</translation>
    </message>
    <message>
        <source>Wait until it is back, then try again.</source>
        <extracomment>What to do when a printer went before its download began.</extracomment>
        <translation>Espere até que ela volte e tente novamente.</translation>
    </message>
    <message>
        <source>Stop it with the command “systemctl stop ipp-usb”, then try again.</source>
        <extracomment>What to do when the service &quot;ipp-usb&quot; is using a USB printer. The text in quotation marks is a command and not translated.</extracomment>
        <translation>Pare-o com o comando “systemctl stop ipp-usb” e tente novamente.</translation>
    </message>
    <message>
        <source>Stop it with the command “systemctl stop cups”, then try again.</source>
        <extracomment>What to do when the service &quot;cups&quot; is using a USB printer. The text in quotation marks is a command and not translated.</extracomment>
        <translation>Pare-o com o comando “systemctl stop cups” e tente novamente.</translation>
    </message>
    <message>
        <source>The program %1 is using the printer’s USB connection.</source>
        <extracomment>Why a download failed. %1 is the name of a program.</extracomment>
        <translation>O programa %1 está usando a conexão USB da impressora.</translation>
    </message>
    <message>
        <source>Close %1, then try again.</source>
        <extracomment>What to do when a program is using the USB connection. %1 is its name.</extracomment>
        <translation>Feche %1 e tente novamente.</translation>
    </message>
    <message>
        <source>The driver %1 of this computer is using the printer’s USB connection.</source>
        <extracomment>Why a download failed. %1 is the name of a driver of this computer.</extracomment>
        <translation>O driver %1 deste computador está usando a conexão USB da impressora.</translation>
    </message>
    <message>
        <source>Unplug the printer and plug it in again, then try again.</source>
        <extracomment>What to do when a driver of this computer is using a USB printer.</extracomment>
        <translation>Desconecte a impressora, conecte-a novamente e tente outra vez.</translation>
    </message>
    <message>
        <source>The printer refused the firmware.</source>
        <extracomment>Why a download failed: the printer has received the firmware and does not want it.</extracomment>
        <translation>A impressora recusou o firmware.</translation>
    </message>
    <message>
        <source>Switch the printer off and on, then try again. If it refuses again, ask whoever supports this printer.</source>
        <extracomment>What to do when the printer refused the firmware.</extracomment>
        <translation>Desligue e ligue a impressora e tente novamente. Se ela recusar outra vez, consulte o suporte desta impressora.</translation>
    </message>
    <message>
        <source>The printer did not confirm the update.</source>
        <extracomment>Headline of a failed download: the printer has got all of the firmware, and nobody knows whether it has it in its memory now.</extracomment>
        <translation>A impressora não confirmou a atualização.</translation>
    </message>
    <message>
        <source>It may still be writing its memory: leave it switched on for a few minutes. Then download the firmware again; a printer that has it is reported as up to date.</source>
        <extracomment>What to do when the printer has got all of the firmware and did not confirm that.</extracomment>
        <translation>Ela ainda pode estar gravando a memória: deixe-a ligada por alguns minutos. Depois, atualize-a de novo; se já tiver o firmware, ela será indicada como atualizada.</translation>
    </message>
    <message>
        <source>Nothing was sent to the printer.</source>
        <extracomment>Headline of a download that ended because the file with the firmware is damaged.</extracomment>
        <translation>Nada foi enviado à impressora.</translation>
    </message>
    <message>
        <source>The program %1 is using this printer.</source>
        <extracomment>Why a download failed. %1 is the name of a program and the number of its process, for example &quot;fwupdate (812)&quot;.</extracomment>
        <translation>O programa %1 está usando esta impressora.</translation>
    </message>
    <message>
        <source>Wait until it has finished, then try again.</source>
        <extracomment>What to do when another program of this computer is updating the same printer.</extracomment>
        <translation>Espere até que ele termine e tente novamente.</translation>
    </message>
    <message>
        <source>Another program is using this printer.</source>
        <extracomment>Why a download failed: which program it is, is not known.</extracomment>
        <translation>Outro programa está usando esta impressora.</translation>
    </message>
</context>
<context>
    <name>Localizable</name>
    <message>
        <source>NETWORK_PRINTER_CONFIRMATION</source>
        <extracomment>The question before a download to a network printer. Its English is in Localizable_en.ts.</extracomment>
        <translation>Atualizar o firmware desta impressora de rede? Enquanto isso, ninguém poderá imprimir nela, e ela deve permanecer ligada.</translation>
    </message>
    <message>
        <source>USB_PRINTER_CONFIRMATION</source>
        <extracomment>The question before a download to a printer on a USB cable. Its English is in Localizable_en.ts.</extracomment>
        <translation>Atualizar o firmware desta impressora USB? Enquanto isso, ela não poderá imprimir e deve permanecer ligada e conectada.</translation>
    </message>
    <message>
        <source>A printer is getting new firmware.</source>
        <extracomment>Shown by the desktop, with the program&apos;s name, as what keeps the computer from sleeping or from being shut down.</extracomment>
        <translation>O firmware de uma impressora está sendo atualizado.</translation>
    </message>
</context>
<context>
    <name>ManualWindow</name>
    <message>
        <source>Manual</source>
        <extracomment>Title of the window that shows the manual, and name of its text.</extracomment>
        <translation>Manual</translation>
    </message>
    <message>
        <source>&amp;Find:</source>
        <extracomment>Beside the field to search the manual.</extracomment>
        <translation>&amp;Localizar:</translation>
    </message>
    <message>
        <source>Find in the manual</source>
        <extracomment>Assistive technology says it of the field to search the manual.</extracomment>
        <translation>Localizar no manual</translation>
    </message>
    <message>
        <source>Not found.</source>
        <extracomment>The manual does not have what was typed.</extracomment>
        <translation>Não encontrado.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the window.</extracomment>
        <translation>&amp;Fechar</translation>
    </message>
</context>
<context>
    <name>MenuBar</name>
    <message>
        <source>Menu bar</source>
        <extracomment>What a screen reader calls the menu bar.</extracomment>
        <translation>Barra de menus</translation>
    </message>
    <message>
        <source>&amp;Printer</source>
        <extracomment>Menu: what can be done with the selected printer.</extracomment>
        <translation>&amp;Impressora</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <extracomment>Menu item: starts the download of new firmware to the selected printer.</extracomment>
        <translation>&amp;Atualizar</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <extracomment>Menu item: ends the program.</extracomment>
        <translation>&amp;Sair</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <extracomment>Menu.</extracomment>
        <translation>Aj&amp;uda</translation>
    </message>
    <message>
        <source>&amp;Manual</source>
        <extracomment>Menu item: shows the manual.</extracomment>
        <translation>&amp;Manual</translation>
    </message>
    <message>
        <source>&amp;Copy diagnostic information</source>
        <extracomment>Menu item: copies what somebody needs to know who is asked for help.</extracomment>
        <translation>&amp;Copiar informações de diagnóstico</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <extracomment>Menu item: shows the program&apos;s version, license and libraries.</extracomment>
        <translation>&amp;Sobre</translation>
    </message>
</context>
<context>
    <name>OutcomeLine</name>
    <message>
        <source>%1 was updated to version %2 at %3.</source>
        <extracomment>the line below the list; %1 is a printer like &quot;Office (10.0.0.5)&quot;, %3 a time of day</extracomment>
        <translation>%1 foi atualizada para a versão %2 às %3.</translation>
    </message>
</context>
<context>
    <name>PrinterSelectWindow</name>
    <message>
        <source>Printer Firmware Update</source>
        <extracomment>Title of the main window, and the name of the program.</extracomment>
        <translation>Atualização de firmware de impressoras</translation>
    </message>
    <message>
        <source>&amp;Select the printer that is to get new firmware:</source>
        <extracomment>Label above the list of printers.</extracomment>
        <translation>&amp;Selecione a impressora que deve receber o novo firmware:</translation>
    </message>
    <message>
        <source>Printers</source>
        <extracomment>What a screen reader calls the list of printers.</extracomment>
        <translation>Impressoras</translation>
    </message>
    <message>
        <source>Looking for printers…</source>
        <extracomment>In the list of printers while it is empty.</extracomment>
        <translation>Procurando impressoras…</translation>
    </message>
    <message>
        <source>Name</source>
        <extracomment>Column of the list: the name of the printer.</extracomment>
        <translation>Nome</translation>
    </message>
    <message>
        <source>Type</source>
        <extracomment>Column of the list: how the printer is connected, &quot;USB&quot; or &quot;Bonjour&quot;.</extracomment>
        <translation>Tipo</translation>
    </message>
    <message>
        <source>Address or serial number</source>
        <extracomment>Column of the list: the IP address of a network printer, the serial number of a USB printer.</extracomment>
        <translation>Endereço ou número de série</translation>
    </message>
    <message>
        <source>Select a printer first.</source>
        <extracomment>Appears when Download is chosen and no printer is selected.</extracomment>
        <translation>Selecione primeiro uma impressora.</translation>
    </message>
    <message>
        <source>Download new firmware to the selected printer</source>
        <extracomment>What a screen reader says of the Download button.</extracomment>
        <translation>Atualizar o firmware da impressora selecionada</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <extracomment>Button: starts the download of new firmware to the selected printer.</extracomment>
        <translation>&amp;Atualizar</translation>
    </message>
    <message>
        <source>No printer has been found yet. Please check:
• The printer is switched on.
• A USB printer: its cable is plugged in at both ends.
• A network printer: it is on the same network as this computer.</source>
        <extracomment>Shown in the empty list after ten seconds, instead of “Looking for printers…”. Four lines.</extracomment>
        <translation>Nenhuma impressora foi encontrada ainda. Verifique:
• A impressora está ligada.
• Impressora USB: o cabo está conectado nas duas pontas.
• Impressora de rede: está na mesma rede que este computador.</translation>
    </message>
    <message>
        <source>• The service that finds network printers is not running, so some may be missing. Start avahi-daemon: systemctl start avahi-daemon</source>
        <extracomment>The next line of that list. What stands behind the last colon is a command and stays as it is.</extracomment>
        <translation>• O serviço que encontra impressoras de rede não está em execução; por isso, podem faltar algumas. Inicie o avahi-daemon: systemctl start avahi-daemon</translation>
    </message>
    <message>
        <source>Diagnostic information was copied.</source>
        <extracomment>Appears when the diagnostic information is on the clipboard.</extracomment>
        <translation>As informações de diagnóstico foram copiadas.</translation>
    </message>
    <message>
        <source>The printer is no longer in the list. Wait until it is back, then try again.</source>
        <extracomment>Appears when the printer left the list while the question about its download was on the screen.</extracomment>
        <translation>A impressora não está mais na lista. Espere até que ela volte e tente novamente.</translation>
    </message>
</context>
<context>
    <name>ProgressSheet</name>
    <message>
        <source>Updating Firmware</source>
        <extracomment>Title of the sheet that is shown during a download.</extracomment>
        <translation>Atualizando o firmware</translation>
    </message>
    <message>
        <source>Download in progress</source>
        <extracomment>What a screen reader calls the progress bar.</extracomment>
        <translation>Atualização em andamento</translation>
    </message>
    <message>
        <source>Do not switch the printer off, and leave it connected until this is done.</source>
        <extracomment>Warning below the progress bar.</extracomment>
        <translation>Não desligue a impressora e deixe-a conectada até que isso termine.</translation>
    </message>
</context>
<context>
    <name>QtText</name>
    <message>
        <source>A printer without a name</source>
        <extracomment>in place of a printer&apos;s name in a sentence: &quot;%1 was updated to version ...&quot;</extracomment>
        <translation>Uma impressora sem nome</translation>
    </message>
</context>
<context>
    <name>QuitSheet</name>
    <message>
        <source>Quit during a Download</source>
        <extracomment>Title of the sheet that asks before the program ends during a download.</extracomment>
        <translation>Sair durante uma atualização</translation>
    </message>
    <message>
        <source>The download to this printer has not ended. If you quit now, the printer may be left without working firmware.</source>
        <extracomment>Below the name of the printer, in the sheet that asks before the program ends.</extracomment>
        <translation>A atualização desta impressora não terminou. Se você sair agora, a impressora poderá ficar sem um firmware funcional.</translation>
    </message>
    <message>
        <source>&amp;Quit anyway</source>
        <extracomment>Button: ends the program although a download runs.</extracomment>
        <translation>&amp;Sair mesmo assim</translation>
    </message>
    <message>
        <source>&amp;Keep downloading</source>
        <extracomment>Button: does not end the program; the download goes on.</extracomment>
        <translation>&amp;Continuar a atualização</translation>
    </message>
</context>
<context>
    <name>UpToDateSheet</name>
    <message>
        <source>Nothing to Update</source>
        <extracomment>Title of the alert when the printer needs no new firmware.</extracomment>
        <translation>Nada a atualizar</translation>
    </message>
    <message>
        <source>The printer is up to date.</source>
        <extracomment>Headline of the alert when the printer needs no new firmware.</extracomment>
        <translation>A impressora está atualizada.</translation>
    </message>
    <message>
        <source>It already runs this firmware or a newer one. Nothing was changed.</source>
        <extracomment>Below the headline; &quot;it&quot; is the printer.</extracomment>
        <translation>Ela já usa este firmware ou um mais recente. Nada foi alterado.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the alert when the printer needs no new firmware.</extracomment>
        <translation>&amp;Fechar</translation>
    </message>
</context>
<context>
    <name>VersionsText</name>
    <message>
        <source>Installed version: %1, available version: %2</source>
        <extracomment>%1 and %2 are numbers of versions of the printer&apos;s firmware</extracomment>
        <translation>Versão instalada: %1, versão disponível: %2</translation>
    </message>
    <message>
        <source>Available version: %1</source>
        <extracomment>%1 is the number of a version; the printer does not tell which one it has</extracomment>
        <translation>Versão disponível: %1</translation>
    </message>
</context>
</TS>
