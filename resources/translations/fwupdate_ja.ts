<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP" sourcelanguage="en_US">
<context>
    <name>AboutWindow</name>
    <message>
        <source>About Printer Firmware Update</source>
        <extracomment>Title of a window.</extracomment>
        <translation>プリンターのファームウェア更新について</translation>
    </message>
    <message>
        <source>Printer Firmware Update</source>
        <extracomment>The name of the program.</extracomment>
        <translation>プリンターのファームウェア更新</translation>
    </message>
    <message>
        <source>Version %1</source>
        <extracomment>%1 is a number like 1.0.0.</extracomment>
        <translation>バージョン %1</translation>
    </message>
    <message>
        <source>Updates the firmware of Veltra KX350T printers.</source>
        <extracomment>What the program is for.</extracomment>
        <translation>Veltra KX350T プリンターのファームウェアを更新します。</translation>
    </message>
    <message>
        <source>Free software under the MIT license.</source>
        <extracomment>Below the name of the program.</extracomment>
        <translation>MIT ライセンスのフリーソフトウェアです。</translation>
    </message>
    <message>
        <source>It uses these libraries:
%1</source>
        <extracomment>%1 is a list of names and versions, each on a line of its own.</extracomment>
        <translation>次のライブラリーを使用しています。
%1</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the window.</extracomment>
        <translation>閉じる(&amp;C)</translation>
    </message>
</context>
<context>
    <name>ConfirmDownloadSheet</name>
    <message>
        <source>Confirm the Download</source>
        <extracomment>Title of the sheet that asks before a download.</extracomment>
        <translation>更新の確認</translation>
    </message>
    <message>
        <source>Do &amp;not download</source>
        <extracomment>Button: leaves the printer as it is.</extracomment>
        <translation>更新しない(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Download firmware</source>
        <extracomment>Button: starts the download.</extracomment>
        <translation>ファームウェアを更新(&amp;D)</translation>
    </message>
</context>
<context>
    <name>DownloadNotification</name>
    <message>
        <source>Printer updated</source>
        <extracomment>Title of a desktop notification after a download.</extracomment>
        <translation>プリンターを更新しました</translation>
    </message>
    <message>
        <source>%1 was updated to version %2.</source>
        <extracomment>Text of a desktop notification; %1 is the printer, like &quot;Office (10.0.0.5)&quot;, %2 the number of the firmware&apos;s version.</extracomment>
        <translation>%1 はバージョン %2 へ更新されました。</translation>
    </message>
    <message>
        <source>Printer already up to date</source>
        <extracomment>Title of a desktop notification after a download that was not needed.</extracomment>
        <translation>プリンターはすでに最新です</translation>
    </message>
    <message>
        <source>%1 already runs this firmware or a newer one. Nothing was changed.</source>
        <extracomment>Text of a desktop notification; %1 is the printer, like &quot;Office (10.0.0.5)&quot;.</extracomment>
        <translation>%1 では、すでにこのファームウェア、またはより新しいものが使われています。何も変更されていません。</translation>
    </message>
    <message>
        <source>Printer not updated</source>
        <extracomment>Title of a desktop notification after a download that failed.</extracomment>
        <translation>プリンターは更新されませんでした</translation>
    </message>
    <message>
        <source>The firmware of %1 was not updated. The program&apos;s window says what to do.</source>
        <extracomment>Text of a desktop notification; %1 is the printer, like &quot;Office (10.0.0.5)&quot;.</extracomment>
        <translation>%1 のファームウェアは更新されませんでした。対処方法はプログラムのウィンドウに表示されています。</translation>
    </message>
</context>
<context>
    <name>DownloadProgress</name>
    <message>
        <source>Sending %1</source>
        <extracomment>what happens now; %1 is an amount of data with its unit, like 8.0 MB</extracomment>
        <translation>%1 を送信しています</translation>
    </message>
    <message>
        <source>The printer takes longer than expected to write its memory</source>
        <extracomment>what happens now: the time for it is over, and the printer has not answered</extracomment>
        <translation>メモリーへの書き込みに予想より時間がかかっています</translation>
    </message>
    <message>
        <source>Connecting to the printer</source>
        <extracomment>what happens now</extracomment>
        <translation>プリンターに接続しています</translation>
    </message>
    <message>
        <source>Asking the printer for its version</source>
        <extracomment>what happens now: the version is that of the printer&apos;s firmware</extracomment>
        <translation>プリンターのバージョンを確認しています</translation>
    </message>
    <message>
        <source>Choosing the firmware</source>
        <extracomment>what happens now</extracomment>
        <translation>ファームウェアを選んでいます</translation>
    </message>
    <message>
        <source>The printer has not answered for more than 30 seconds. Check that it is switched on, connected and not busy. No firmware has been sent yet: you can quit and try again.</source>
        <extracomment>advice while a printer is asked for its version</extracomment>
        <translation>プリンターから 30 秒以上応答がありません。電源が入っていること、接続されていること、ほかの処理中でないことを確認してください。ファームウェアはまだ送信されていないため、終了してやり直すことができます。</translation>
    </message>
    <message>
        <source>The printer has not taken any data for more than 30 seconds. Leave it switched on, and check that it is connected. If nothing changes in a few minutes, quit and try again.</source>
        <extracomment>advice while firmware is being sent</extracomment>
        <translation>プリンターが 30 秒以上データを受け取っていません。電源を入れたまま、接続されていることを確認してください。数分たっても変わらない場合は、終了してやり直してください。</translation>
    </message>
    <message>
        <source>The printer has not answered since it got the firmware. Leave it switched on: it may still be writing. Once it is ready, quit and update it again to see whether it is up to date.</source>
        <extracomment>advice when the printer has all of the firmware, and its time for writing is over</extracomment>
        <translation>ファームウェアの受信後、プリンターから応答がありません。まだ書き込み中の可能性があるため、電源を入れたままにしてください。使える状態になったら、終了してもう一度更新し、最新の状態かどうかを確認してください。</translation>
    </message>
    <message numerus="yes">
        <source>The printer is writing its memory: this may take up to %n second(s)</source>
        <extracomment>what happens now; the time is below a minute</extracomment>
        <translation>
            <numerusform>プリンターがメモリーに書き込んでいます。最大 %n 秒かかることがあります</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The printer is writing its memory: this may take up to %n minute(s)</source>
        <extracomment>what happens now</extracomment>
        <translation>
            <numerusform>プリンターがメモリーに書き込んでいます。最大 %n 分かかることがあります</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FailedSheet</name>
    <message>
        <source>Download Failed</source>
        <extracomment>Title of the alert after a download that failed.</extracomment>
        <translation>更新の失敗</translation>
    </message>
    <message>
        <source>The firmware was not updated.</source>
        <extracomment>Headline of the alert after a download that failed.</extracomment>
        <translation>ファームウェアは更新されませんでした。</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the alert after a download that failed.</extracomment>
        <translation>閉じる(&amp;C)</translation>
    </message>
    <message>
        <source>Log of this download</source>
        <extracomment>Name of the text with the log of a failed download, for screen readers.</extracomment>
        <translation>この更新のログ</translation>
    </message>
    <message>
        <source>&amp;Details</source>
        <extracomment>Button: shows the log of a failed download in the alert, and hides it again.</extracomment>
        <translation>詳細(&amp;D)</translation>
    </message>
    <message>
        <source>C&amp;opy details</source>
        <extracomment>Button: copies cause and log of a failed download to the clipboard.</extracomment>
        <translation>詳細をコピー(&amp;O)</translation>
    </message>
    <message>
        <source>Details c&amp;opied</source>
        <extracomment>The same button when it has copied them.</extracomment>
        <translation>詳細をコピーしました(&amp;O)</translation>
    </message>
</context>
<context>
    <name>FailureCause</name>
    <message>
        <source>Check that the printer is switched on, connected and not printing, then try again.</source>
        <extracomment>What to do after a failed download.</extracomment>
        <translation>プリンターの電源が入っていること、接続されていること、印刷中でないことを確認してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Check that the printer is switched on and on the same network as this computer, then try again.</source>
        <extracomment>What to do after a failed download to a network printer.</extracomment>
        <translation>プリンターの電源が入っていて、このコンピューターと同じネットワークにあることを確認してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Switch the printer off and on, then try again.</source>
        <extracomment>What to do after a failed download.</extracomment>
        <translation>プリンターの電源を入れ直してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Wait until the printer has finished its other work, or switch it off and on, then try again.</source>
        <extracomment>What to do after a failed download: wait, or else restart the printer.</extracomment>
        <translation>プリンターのほかの処理が終わるまで待つか、電源を入れ直してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Install the printer’s firmware again, then try again.</source>
        <extracomment>What to do after a failed download: the firmware file came with a package, and has to be installed once more.</extracomment>
        <translation>プリンターのファームウェアを再インストールしてから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Install this program again, then try again.</source>
        <extracomment>What to do after a failed download: files of this program are missing or damaged.</extracomment>
        <translation>このプログラムを再インストールしてから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Connect the printer’s cable directly to this computer, without a hub, then try again.</source>
        <extracomment>What to do after a failed download to a USB printer.</extracomment>
        <translation>プリンターのケーブルを、ハブを使わずにこのコンピューターへ直接つないでから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Close other programs, then try again.</source>
        <extracomment>What to do after a failed download: the computer lacks memory or other resources.</extracomment>
        <translation>ほかのプログラムを閉じてから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Try again. If it fails again, send a copy of the details to whoever supports this printer.</source>
        <extracomment>What to do after a failed download: &quot;the details&quot; are the part of this window with the log.</extracomment>
        <translation>もう一度お試しください。再び失敗する場合は、詳細のコピーをこのプリンターのサポート担当に送ってください。</translation>
    </message>
    <message>
        <source>The connection to the printer was lost.</source>
        <extracomment>Why a download failed: an established connection broke.</extracomment>
        <translation>プリンターとの接続が切れました。</translation>
    </message>
    <message>
        <source>The printer cannot be reached over the network.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>ネットワーク経由でプリンターに到達できません。</translation>
    </message>
    <message>
        <source>The printer did not answer.</source>
        <extracomment>Why a download failed: the printer remained silent.</extracomment>
        <translation>プリンターから応答がありませんでした。</translation>
    </message>
    <message>
        <source>The printer stopped taking data.</source>
        <extracomment>Why a download failed: the printer is connected, and takes no more data.</extracomment>
        <translation>プリンターがデータを受け取らなくなりました。</translation>
    </message>
    <message>
        <source>The printer closed the connection.</source>
        <extracomment>Why a download failed: another computer or program has closed an established connection.</extracomment>
        <translation>プリンターが接続を閉じました。</translation>
    </message>
    <message>
        <source>The printer answered something that this program does not understand.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>プリンターから、このプログラムが理解できない応答がありました。</translation>
    </message>
    <message>
        <source>This computer cannot open another connection.</source>
        <extracomment>Why a download failed: too many files or connections are open on this computer.</extracomment>
        <translation>このコンピューターでは、これ以上接続を開けません。</translation>
    </message>
    <message>
        <source>This computer does not allow the connection.</source>
        <extracomment>Why a download failed: a firewall on this computer, for example.</extracomment>
        <translation>このコンピューターは接続を許可していません。</translation>
    </message>
    <message>
        <source>Allow it in the settings of this computer’s firewall, then try again.</source>
        <extracomment>What to do when this computer does not allow the connection to the printer.</extracomment>
        <translation>このコンピューターのファイアウォールの設定で許可してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>This computer ran out of memory.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>このコンピューターのメモリーが不足しました。</translation>
    </message>
    <message>
        <source>This program met an error of its own.</source>
        <extracomment>Why a download failed: a fault of this program, not of the printer.</extracomment>
        <translation>このプログラムで内部エラーが発生しました。</translation>
    </message>
    <message>
        <source>The file with the firmware is missing.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>ファームウェアのファイルがありません。</translation>
    </message>
    <message>
        <source>The file with the firmware cannot be read.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>ファームウェアのファイルを読み込めません。</translation>
    </message>
    <message>
        <source>The file with the firmware is damaged.</source>
        <extracomment>Why a download failed, or why nothing was sent.</extracomment>
        <translation>ファームウェアのファイルが壊れています。</translation>
    </message>
    <message>
        <source>Files of this program are missing.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>このプログラムのファイルが不足しています。</translation>
    </message>
    <message>
        <source>You are not permitted to use the printer’s USB connection.</source>
        <extracomment>Why a download failed: the user has no right to open the USB device.</extracomment>
        <translation>プリンターの USB 接続を使用する権限がありません。</translation>
    </message>
    <message>
        <source>Unplug the printer and plug it in again. If that does not help, ask the administrator of this computer for permission.</source>
        <extracomment>What to do when the user has no right to open the USB device.</extracomment>
        <translation>プリンターをいったん抜いて、つなぎ直してください。それでも解決しない場合は、このコンピューターの管理者に許可を依頼してください。</translation>
    </message>
    <message>
        <source>Another program is using the printer’s USB connection.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>別のプログラムがプリンターの USB 接続を使用しています。</translation>
    </message>
    <message>
        <source>Close programs that print or scan, then try again.</source>
        <extracomment>What to do when another program is using the printer&apos;s USB connection.</extracomment>
        <translation>印刷やスキャンを行うプログラムを閉じてから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The printer was disconnected or switched off.</source>
        <extracomment>Why a download to a USB printer failed.</extracomment>
        <translation>プリンターが取り外されたか、電源が切られました。</translation>
    </message>
    <message>
        <source>Check its cable and switch it on, then try again.</source>
        <extracomment>What to do when a USB printer was disconnected or switched off.</extracomment>
        <translation>ケーブルを確認し、電源を入れてから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The printer offers no USB connection that this program can use.</source>
        <extracomment>Why a download to a USB printer failed: it has no USB interface of the kind for printers.</extracomment>
        <translation>プリンターには、このプログラムで使用できる USB 接続がありません。</translation>
    </message>
    <message>
        <source>The USB connection to the printer failed.</source>
        <extracomment>Why a download to a USB printer failed.</extracomment>
        <translation>プリンターとの USB 接続に失敗しました。</translation>
    </message>
    <message>
        <source>The firmware is larger than this computer allows over USB.</source>
        <extracomment>Why a download to a USB printer failed: the kernel of this computer limits a transfer.</extracomment>
        <translation>ファームウェアが、このコンピューターで USB 経由に許可されているサイズを超えています。</translation>
    </message>
    <message>
        <source>Ask the administrator of this computer to raise “usbcore.usbfs_memory_mb”, then try again.</source>
        <extracomment>What to do when the firmware is larger than this computer allows over USB. The text in quotation marks is a setting and not translated.</extracomment>
        <translation>このコンピューターの管理者に「usbcore.usbfs_memory_mb」の値を上げてもらってから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The printer refused the connection.</source>
        <extracomment>Why a download failed: the network printer is there, and takes no connection.</extracomment>
        <translation>プリンターが接続を拒否しました。</translation>
    </message>
    <message>
        <source>The printer has no address that this program can use.</source>
        <extracomment>Why a download failed: the network printer has an IPv6 address only.</extracomment>
        <translation>プリンターには、このプログラムで使用できるアドレスがありません。</translation>
    </message>
    <message>
        <source>Give the printer an IPv4 address in its network settings, then try again.</source>
        <extracomment>What to do when a network printer has an IPv6 address only.</extracomment>
        <translation>プリンターのネットワーク設定で IPv4 アドレスを割り当ててから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The printer did not say which model it is.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>プリンターから機種名が通知されませんでした。</translation>
    </message>
    <message>
        <source>There is no firmware for this model of printer.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>この機種のプリンター用のファームウェアはありません。</translation>
    </message>
    <message>
        <source>Ask whoever supports this printer where its firmware is to be had.</source>
        <extracomment>What to do when there is no firmware for a printer.</extracomment>
        <translation>ファームウェアの入手先を、このプリンターのサポート担当にお問い合わせください。</translation>
    </message>
    <message>
        <source>The printer is no longer in the list.</source>
        <extracomment>Why a download did not begin.</extracomment>
        <translation>プリンターが一覧からなくなりました。</translation>
    </message>
    <message>
        <source>Wait until it is back, then try again.</source>
        <extracomment>What to do when a printer went before its download began.</extracomment>
        <translation>再び表示されるまで待ってから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Stop it with the command “systemctl stop ipp-usb”, then try again.</source>
        <extracomment>What to do when the service &quot;ipp-usb&quot; is using a USB printer. The text in quotation marks is a command and not translated.</extracomment>
        <translation>コマンド「systemctl stop ipp-usb」で停止してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Stop it with the command “systemctl stop cups”, then try again.</source>
        <extracomment>What to do when the service &quot;cups&quot; is using a USB printer. The text in quotation marks is a command and not translated.</extracomment>
        <translation>コマンド「systemctl stop cups」で停止してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The program %1 is using the printer’s USB connection.</source>
        <extracomment>Why a download failed. %1 is the name of a program.</extracomment>
        <translation>プログラム %1 がプリンターの USB 接続を使用しています。</translation>
    </message>
    <message>
        <source>Close %1, then try again.</source>
        <extracomment>What to do when a program is using the USB connection. %1 is its name.</extracomment>
        <translation>%1 を閉じてから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The driver %1 of this computer is using the printer’s USB connection.</source>
        <extracomment>Why a download failed. %1 is the name of a driver of this computer.</extracomment>
        <translation>このコンピューターのドライバー %1 がプリンターの USB 接続を使用しています。</translation>
    </message>
    <message>
        <source>Unplug the printer and plug it in again, then try again.</source>
        <extracomment>What to do when a driver of this computer is using a USB printer.</extracomment>
        <translation>プリンターをいったん抜いてつなぎ直してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The printer refused the firmware.</source>
        <extracomment>Why a download failed: the printer has received the firmware and does not want it.</extracomment>
        <translation>プリンターがファームウェアを拒否しました。</translation>
    </message>
    <message>
        <source>Switch the printer off and on, then try again. If it refuses again, ask whoever supports this printer.</source>
        <extracomment>What to do when the printer refused the firmware.</extracomment>
        <translation>プリンターの電源を入れ直してから、もう一度お試しください。再び拒否される場合は、このプリンターのサポート担当にお問い合わせください。</translation>
    </message>
    <message>
        <source>The printer did not confirm the update.</source>
        <extracomment>Headline of a failed download: the printer has got all of the firmware, and nobody knows whether it has it in its memory now.</extracomment>
        <translation>プリンターから更新完了の確認がありませんでした。</translation>
    </message>
    <message>
        <source>It may still be writing its memory: leave it switched on for a few minutes. Then download the firmware again; a printer that has it is reported as up to date.</source>
        <extracomment>What to do when the printer has got all of the firmware and did not confirm that.</extracomment>
        <translation>まだメモリーに書き込んでいる可能性があります。数分間、電源を入れたままにしてください。その後もう一度更新してください。書き込みが済んでいれば、最新の状態と表示されます。</translation>
    </message>
    <message>
        <source>Nothing was sent to the printer.</source>
        <extracomment>Headline of a download that ended because the file with the firmware is damaged.</extracomment>
        <translation>プリンターには何も送信されませんでした。</translation>
    </message>
    <message>
        <source>The program %1 is using this printer.</source>
        <extracomment>Why a download failed. %1 is the name of a program and the number of its process, for example &quot;fwupdate (812)&quot;.</extracomment>
        <translation>プログラム %1 がこのプリンターを使用しています。</translation>
    </message>
    <message>
        <source>Wait until it has finished, then try again.</source>
        <extracomment>What to do when another program of this computer is updating the same printer.</extracomment>
        <translation>終了するまで待ってから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Another program is using this printer.</source>
        <extracomment>Why a download failed: which program it is, is not known.</extracomment>
        <translation>別のプログラムがこのプリンターを使用しています。</translation>
    </message>
</context>
<context>
    <name>Localizable</name>
    <message>
        <source>NETWORK_PRINTER_CONFIRMATION</source>
        <extracomment>The question before a download to a network printer. Its English is in Localizable_en.ts.</extracomment>
        <translation>このネットワークプリンターのファームウェアを更新しますか？更新中は誰も印刷できません。電源を入れたままにしてください。</translation>
    </message>
    <message>
        <source>USB_PRINTER_CONFIRMATION</source>
        <extracomment>The question before a download to a printer on a USB cable. Its English is in Localizable_en.ts.</extracomment>
        <translation>この USB プリンターのファームウェアを更新しますか？更新中は印刷できません。電源を入れ、接続したままにしてください。</translation>
    </message>
    <message>
        <source>A printer is getting new firmware.</source>
        <extracomment>Shown by the desktop, with the program&apos;s name, as what keeps the computer from sleeping or from being shut down.</extracomment>
        <translation>プリンターのファームウェアを更新しています。</translation>
    </message>
</context>
<context>
    <name>ManualWindow</name>
    <message>
        <source>Manual</source>
        <extracomment>Title of the window that shows the manual, and name of its text.</extracomment>
        <translation>マニュアル</translation>
    </message>
    <message>
        <source>&amp;Find:</source>
        <extracomment>Beside the field to search the manual.</extracomment>
        <translation>検索(&amp;F):</translation>
    </message>
    <message>
        <source>Find in the manual</source>
        <extracomment>Assistive technology says it of the field to search the manual.</extracomment>
        <translation>マニュアル内を検索</translation>
    </message>
    <message>
        <source>Not found.</source>
        <extracomment>The manual does not have what was typed.</extracomment>
        <translation>見つかりません。</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the window.</extracomment>
        <translation>閉じる(&amp;C)</translation>
    </message>
</context>
<context>
    <name>MenuBar</name>
    <message>
        <source>Menu bar</source>
        <extracomment>What a screen reader calls the menu bar.</extracomment>
        <translation>メニューバー</translation>
    </message>
    <message>
        <source>&amp;Printer</source>
        <extracomment>Menu: what can be done with the selected printer.</extracomment>
        <translation>プリンター(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <extracomment>Menu item: starts the download of new firmware to the selected printer.</extracomment>
        <translation>更新(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <extracomment>Menu item: ends the program.</extracomment>
        <translation>終了(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <extracomment>Menu.</extracomment>
        <translation>ヘルプ(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;Manual</source>
        <extracomment>Menu item: shows the manual.</extracomment>
        <translation>マニュアル(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;Copy diagnostic information</source>
        <extracomment>Menu item: copies what somebody needs to know who is asked for help.</extracomment>
        <translation>診断情報をコピー(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <extracomment>Menu item: shows the program&apos;s version, license and libraries.</extracomment>
        <translation>このプログラムについて(&amp;A)</translation>
    </message>
</context>
<context>
    <name>OutcomeLine</name>
    <message>
        <source>%1 was updated to version %2 at %3.</source>
        <extracomment>the line below the list; %1 is a printer like &quot;Office (10.0.0.5)&quot;, %3 a time of day</extracomment>
        <translation>%1 は %3 にバージョン %2 へ更新されました。</translation>
    </message>
</context>
<context>
    <name>PrinterSelectWindow</name>
    <message>
        <source>Printer Firmware Update</source>
        <extracomment>Title of the main window, and the name of the program.</extracomment>
        <translation>プリンターのファームウェア更新</translation>
    </message>
    <message>
        <source>&amp;Select the printer that is to get new firmware:</source>
        <extracomment>Label above the list of printers.</extracomment>
        <translation>新しいファームウェアを書き込むプリンターを選択してください(&amp;S):</translation>
    </message>
    <message>
        <source>Printers</source>
        <extracomment>What a screen reader calls the list of printers.</extracomment>
        <translation>プリンター</translation>
    </message>
    <message>
        <source>Looking for printers…</source>
        <extracomment>In the list of printers while it is empty.</extracomment>
        <translation>プリンターを検索しています…</translation>
    </message>
    <message>
        <source>Name</source>
        <extracomment>Column of the list: the name of the printer.</extracomment>
        <translation>名前</translation>
    </message>
    <message>
        <source>Type</source>
        <extracomment>Column of the list: how the printer is connected, &quot;USB&quot; or &quot;Bonjour&quot;.</extracomment>
        <translation>種類</translation>
    </message>
    <message>
        <source>Address or serial number</source>
        <extracomment>Column of the list: the IP address of a network printer, the serial number of a USB printer.</extracomment>
        <translation>アドレスまたはシリアル番号</translation>
    </message>
    <message>
        <source>Select a printer first.</source>
        <extracomment>Appears when Download is chosen and no printer is selected.</extracomment>
        <translation>先にプリンターを選択してください。</translation>
    </message>
    <message>
        <source>Download new firmware to the selected printer</source>
        <extracomment>What a screen reader says of the Download button.</extracomment>
        <translation>選択したプリンターのファームウェアを更新します</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <extracomment>Button: starts the download of new firmware to the selected printer.</extracomment>
        <translation>更新(&amp;D)</translation>
    </message>
    <message>
        <source>No printer has been found yet. Please check:
• The printer is switched on.
• A USB printer: its cable is plugged in at both ends.
• A network printer: it is on the same network as this computer.</source>
        <extracomment>Shown in the empty list after ten seconds, instead of “Looking for printers…”. Four lines.</extracomment>
        <translation>プリンターがまだ見つかりません。次の点を確認してください。
• プリンターの電源が入っている。
• USB プリンター：ケーブルの両端が差し込まれている。
• ネットワークプリンター：このコンピューターと同じネットワークにある。</translation>
    </message>
    <message>
        <source>• The service that finds network printers is not running, so some may be missing. Start avahi-daemon: systemctl start avahi-daemon</source>
        <extracomment>The next line of that list. What stands behind the last colon is a command and stays as it is.</extracomment>
        <translation>• ネットワークプリンターを検出するサービスが動作していないため、一部が表示されない可能性があります。avahi-daemon を起動してください：systemctl start avahi-daemon</translation>
    </message>
    <message>
        <source>Diagnostic information was copied.</source>
        <extracomment>Appears when the diagnostic information is on the clipboard.</extracomment>
        <translation>診断情報をコピーしました。</translation>
    </message>
    <message>
        <source>The printer is no longer in the list. Wait until it is back, then try again.</source>
        <extracomment>Appears when the printer left the list while the question about its download was on the screen.</extracomment>
        <translation>プリンターが一覧からなくなりました。再び表示されるまで待ってから、もう一度お試しください。</translation>
    </message>
</context>
<context>
    <name>ProgressSheet</name>
    <message>
        <source>Updating Firmware</source>
        <extracomment>Title of the sheet that is shown during a download.</extracomment>
        <translation>ファームウェアの更新</translation>
    </message>
    <message>
        <source>Download in progress</source>
        <extracomment>What a screen reader calls the progress bar.</extracomment>
        <translation>更新中</translation>
    </message>
    <message>
        <source>Do not switch the printer off, and leave it connected until this is done.</source>
        <extracomment>Warning below the progress bar.</extracomment>
        <translation>完了するまで、プリンターの電源を切らず、接続したままにしてください。</translation>
    </message>
</context>
<context>
    <name>QtText</name>
    <message>
        <source>A printer without a name</source>
        <extracomment>in place of a printer&apos;s name in a sentence: &quot;%1 was updated to version ...&quot;</extracomment>
        <translation>名前のないプリンター</translation>
    </message>
</context>
<context>
    <name>QuitSheet</name>
    <message>
        <source>Quit during a Download</source>
        <extracomment>Title of the sheet that asks before the program ends during a download.</extracomment>
        <translation>更新中の終了</translation>
    </message>
    <message>
        <source>The download to this printer has not ended. If you quit now, the printer may be left without working firmware.</source>
        <extracomment>Below the name of the printer, in the sheet that asks before the program ends.</extracomment>
        <translation>このプリンターの更新は完了していません。今終了すると、プリンターのファームウェアが動作しなくなるおそれがあります。</translation>
    </message>
    <message>
        <source>&amp;Quit anyway</source>
        <extracomment>Button: ends the program although a download runs.</extracomment>
        <translation>それでも終了(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;Keep downloading</source>
        <extracomment>Button: does not end the program; the download goes on.</extracomment>
        <translation>更新を続ける(&amp;K)</translation>
    </message>
</context>
<context>
    <name>UpToDateSheet</name>
    <message>
        <source>Nothing to Update</source>
        <extracomment>Title of the alert when the printer needs no new firmware.</extracomment>
        <translation>更新は不要</translation>
    </message>
    <message>
        <source>The printer is up to date.</source>
        <extracomment>Headline of the alert when the printer needs no new firmware.</extracomment>
        <translation>プリンターは最新の状態です。</translation>
    </message>
    <message>
        <source>It already runs this firmware or a newer one. Nothing was changed.</source>
        <extracomment>Below the headline; &quot;it&quot; is the printer.</extracomment>
        <translation>すでにこのファームウェア、またはより新しいものが使われています。何も変更されていません。</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the alert when the printer needs no new firmware.</extracomment>
        <translation>閉じる(&amp;C)</translation>
    </message>
</context>
<context>
    <name>VersionsText</name>
    <message>
        <source>Installed version: %1, available version: %2</source>
        <extracomment>%1 and %2 are numbers of versions of the printer&apos;s firmware</extracomment>
        <translation>インストール済みのバージョン: %1、提供バージョン: %2</translation>
    </message>
    <message>
        <source>Available version: %1</source>
        <extracomment>%1 is the number of a version; the printer does not tell which one it has</extracomment>
        <translation>提供バージョン: %1</translation>
    </message>
</context>
</TS>
