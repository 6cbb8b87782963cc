<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en_US">
<context>
    <name>AboutWindow</name>
    <message>
        <source>About Printer Firmware Update</source>
        <extracomment>Title of a window.</extracomment>
        <translation>关于打印机固件更新</translation>
    </message>
    <message>
        <source>Printer Firmware Update</source>
        <extracomment>The name of the program.</extracomment>
        <translation>打印机固件更新</translation>
    </message>
    <message>
        <source>Version %1</source>
        <extracomment>%1 is a number like 1.0.0.</extracomment>
        <translation>版本 %1</translation>
    </message>
    <message>
        <source>Updates the firmware of Veltra KX350T printers.</source>
        <extracomment>What the program is for.</extracomment>
        <translation>更新 Veltra KX350T 打印机的固件。</translation>
    </message>
    <message>
        <source>Free software under the MIT license.</source>
        <extracomment>Below the name of the program.</extracomment>
        <translation>采用 MIT 许可证的自由软件。</translation>
    </message>
    <message>
        <source>It uses these libraries:
%1</source>
        <extracomment>%1 is a list of names and versions, each on a line of its own.</extracomment>
        <translation>它使用以下库：
%1</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the window.</extracomment>
        <translation>关闭(&amp;C)</translation>
    </message>
</context>
<context>
    <name>ConfirmDownloadSheet</name>
    <message>
        <source>Confirm the Download</source>
        <extracomment>Title of the sheet that asks before a download.</extracomment>
        <translation>确认更新</translation>
    </message>
    <message>
        <source>Do &amp;not download</source>
        <extracomment>Button: leaves the printer as it is.</extracomment>
        <translation>不更新(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Download firmware</source>
        <extracomment>Button: starts the download.</extracomment>
        <translation>更新固件(&amp;D)</translation>
    </message>
</context>
<context>
    <name>DownloadNotification</name>
    <message>
        <source>Printer updated</source>
        <extracomment>Title of a desktop notification after a download.</extracomment>
        <translation>打印机已更新</translation>
    </message>
    <message>
        <source>%1 was updated to version %2.</source>
        <extracomment>Text of a desktop notification; %1 is the printer, like &quot;Office (10.0.0.5)&quot;, %2 the number of the firmware&apos;s version.</extracomment>
        <translation>%1 已更新到版本 %2。</translation>
    </message>
    <message>
        <source>Printer already up to date</source>
        <extracomment>Title of a desktop notification after a download that was not needed.</extracomment>
        <translation>打印机已是最新</translation>
    </message>
    <message>
        <source>%1 already runs this firmware or a newer one. Nothing was changed.</source>
        <extracomment>Text of a desktop notification; %1 is the printer, like &quot;Office (10.0.0.5)&quot;.</extracomment>
        <translation>%1 已在使用此固件或更新的固件。未做任何更改。</translation>
    </message>
    <message>
        <source>Printer not updated</source>
        <extracomment>Title of a desktop notification after a download that failed.</extracomment>
        <translation>打印机未更新</translation>
    </message>
    <message>
        <source>The firmware of %1 was not updated. The program&apos;s window says what to do.</source>
        <extracomment>Text of a desktop notification; %1 is the printer, like &quot;Office (10.0.0.5)&quot;.</extracomment>
        <translation>%1 的固件未更新。程序窗口中说明了应如何处理。</translation>
    </message>
</context>
<context>
    <name>DownloadProgress</name>
    <message>
        <source>Sending %1</source>
        <extracomment>what happens now; %1 is an amount of data with its unit, like 8.0 MB</extracomment>
        <translation>正在发送 %1</translation>
    </message>
    <message>
        <source>The printer takes longer than expected to write its memory</source>
        <extracomment>what happens now: the time for it is over, and the printer has not answered</extracomment>
        <translation>打印机写入存储器的时间比预期长</translation>
    </message>
    <message>
        <source>Connecting to the printer</source>
        <extracomment>what happens now</extracomment>
        <translation>正在连接打印机</translation>
    </message>
    <message>
        <source>Asking the printer for its version</source>
        <extracomment>what happens now: the version is that of the printer&apos;s firmware</extracomment>
        <translation>正在查询打印机的版本</translation>
    </message>
    <message>
        <source>Choosing the firmware</source>
        <extracomment>what happens now</extracomment>
        <translation>正在选择固件</translation>
    </message>
    <message>
        <source>The printer has not answered for more than 30 seconds. Check that it is switched on, connected and not busy. No firmware has been sent yet: you can quit and try again.</source>
        <extracomment>advice while a printer is asked for its version</extracomment>
        <translation>打印机已超过 30 秒没有响应。请确认它已开机、已连接且不忙。尚未发送任何固件：您可以退出并重试。</translation>
    </message>
    <message>
        <source>The printer has not taken any data for more than 30 seconds. Leave it switched on, and check that it is connected. If nothing changes in a few minutes, quit and try again.</source>
        <extracomment>advice while firmware is being sent</extracomment>
        <translation>打印机已超过 30 秒没有接收数据。请让它保持开机，并确认已连接。如果几分钟内没有变化，请退出并重试。</translation>
    </message>
    <message>
        <source>The printer has not answered since it got the firmware. Leave it switched on: it may still be writing. Once it is ready, quit and update it again to see whether it is up to date.</source>
        <extracomment>advice when the printer has all of the firmware, and its time for writing is over</extracomment>
        <translation>打印机自收到固件后一直没有响应。请让它保持开机：它可能仍在写入。待它就绪后，请退出并再次更新，以查看它是否已是最新。</translation>
    </message>
    <message numerus="yes">
        <source>The printer is writing its memory: this may take up to %n second(s)</source>
        <extracomment>what happens now; the time is below a minute</extracomment>
        <translation>
            <numerusform>打印机正在写入存储器：最多可能需要 %n 秒</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The printer is writing its memory: this may take up to %n minute(s)</source>
        <extracomment>what happens now</extracomment>
        <translation>
            <numerusform>打印机正在写入存储器：最多可能需要 %n 分钟</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FailedSheet</name>
    <message>
        <source>Download Failed</source>
        <extracomment>Title of the alert after a download that failed.</extracomment>
        <translation>更新失败</translation>
    </message>
    <message>
        <source>The firmware was not updated.</source>
        <extracomment>Headline of the alert after a download that failed.</extracomment>
        <translation>固件未更新。</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the alert after a download that failed.</extracomment>
        <translation>关闭(&amp;C)</translation>
    </message>
    <message>
        <source>Log of this download</source>
        <extracomment>Name of the text with the log of a failed download, for screen readers.</extracomment>
        <translation>本次更新的日志</translation>
    </message>
    <message>
        <source>&amp;Details</source>
        <extracomment>Button: shows the log of a failed download in the alert, and hides it again.</extracomment>
        <translation>详细信息(&amp;D)</translation>
    </message>
    <message>
        <source>C&amp;opy details</source>
        <extracomment>Button: copies cause and log of a failed download to the clipboard.</extracomment>
        <translation>复制详细信息(&amp;O)</translation>
    </message>
    <message>
        <source>Details c&amp;opied</source>
        <extracomment>The same button when it has copied them.</extracomment>
        <translation>已复制详细信息(&amp;O)</translation>
    </message>
</context>
<context>
    <name>FailureCause</name>
    <message>
        <source>Check that the printer is switched on, connected and not printing, then try again.</source>
        <extracomment>What to do after a failed download.</extracomment>
        <translation>请确认打印机已开机、已连接且未在打印，然后重试。</translation>
    </message>
    <message>
        <source>Check that the printer is switched on and on the same network as this computer, then try again.</source>
        <extracomment>What to do after a failed download to a network printer.</extracomment>
        <translation>请确认打印机已开机并与此计算机处于同一网络，然后重试。</translation>
    </message>
    <message>
        <source>Switch the printer off and on, then try again.</source>
        <extracomment>What to do after a failed download.</extracomment>
        <translation>请关闭并重新打开打印机电源，然后重试。</translation>
    </message>
    <message>
        <source>Wait until the printer has finished its other work, or switch it off and on, then try again.</source>
        <extracomment>What to do after a failed download: wait, or else restart the printer.</extracomment>
        <translation>请等待打印机完成其他任务，或关闭并重新打开其电源，然后重试。</translation>
    </message>
    <message>
        <source>Install the printer’s firmware again, then try again.</source>
        <extracomment>What to do after a failed download: the firmware file came with a package, and has to be installed once more.</extracomment>
        <translation>请重新安装打印机的固件，然后重试。</translation>
    </message>
    <message>
        <source>Install this program again, then try again.</source>
        <extracomment>What to do after a failed download: files of this program are missing or damaged.</extracomment>
        <translation>请重新安装本程序，然后重试。</translation>
    </message>
    <message>
        <source>Connect the printer’s cable directly to this computer, without a hub, then try again.</source>
        <extracomment>What to do after a failed download to a USB printer.</extracomment>
        <translation>请将打印机的线缆直接连接到此计算机，不要使用集线器，然后重试。</translation>
    </message>
    <message>
        <source>Close other programs, then try again.</source>
        <extracomment>What to do after a failed download: the computer lacks memory or other resources.</extracomment>
        <translation>请关闭其他程序，然后重试。</translation>
    </message>
    <message>
        <source>Try again. If it fails again, send a copy of the details to whoever supports this printer.</source>
        <extracomment>What to do after a failed download: &quot;the details&quot; are the part of this window with the log.</extracomment>
        <translation>请重试。如果再次失败，请将详细信息的副本发送给此打印机的支持人员。</translation>
    </message>
    <message>
        <source>The connection to the printer was lost.</source>
        <extracomment>Why a download failed: an established connection broke.</extracomment>
        <translation>与打印机的连接已断开。</translation>
    </message>
    <message>
        <source>The printer cannot be reached over the network.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>无法通过网络访问打印机。</translation>
    </message>
    <message>
        <source>The printer did not answer.</source>
        <extracomment>Why a download failed: the printer remained silent.</extracomment>
        <translation>打印机没有响应。</translation>
    </message>
    <message>
        <source>The printer stopped taking data.</source>
        <extracomment>Why a download failed: the printer is connected, and takes no more data.</extracomment>
        <translation>打印机停止接收数据。</translation>
    </message>
    <message>
        <source>The printer closed the connection.</source>
        <extracomment>Why a download failed: another computer or program has closed an established connection.</extracomment>
        <translation>打印机关闭了连接。</translation>
    </message>
    <message>
        <source>The printer answered something that this program does not understand.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>打印机的响应无法被本程序识别。</translation>
    </message>
    <message>
        <source>This computer cannot open another connection.</source>
        <extracomment>Why a download failed: too many files or connections are open on this computer.</extracomment>
        <translation>此计算机无法再打开新的连接。</translation>
    </message>
    <message>
        <source>This computer does not allow the connection.</source>
        <extracomment>Why a download failed: a firewall on this computer, for example.</extracomment>
        <translation>此计算机不允许该连接。</translation>
    </message>
    <message>
        <source>Allow it in the settings of this computer’s firewall, then try again.</source>
        <extracomment>What to do when this computer does not allow the connection to the printer.</extracomment>
        <translation>请在此计算机的防火墙设置中允许该连接，然后重试。</translation>
    </message>
    <message>
        <source>This computer ran out of memory.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>此计算机内存不足。</translation>
    </message>
    <message>
        <source>This program met an error of its own.</source>
        <extracomment>Why a download failed: a fault of this program, not of the printer.</extracomment>
        <translation>本程序发生内部错误。</translation>
    </message>
    <message>
        <source>The file with the firmware is missing.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>缺少固件文件。</translation>
    </message>
    <message>
        <source>The file with the firmware cannot be read.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>无法读取固件文件。</translation>
    </message>
    <message>
        <source>The file with the firmware is damaged.</source>
        <extracomment>Why a download failed, or why nothing was sent.</extracomment>
        <translation>固件文件已损坏。</translation>
    </message>
    <message>
        <source>Files of this program are missing.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>缺少本程序的文件。</translation>
    </message>
    <message>
        <source>You are not permitted to use the printer’s USB connection.</source>
        <extracomment>Why a download failed: the user has no right to open the USB device.</extracomment>
        <translation>您无权使用打印机的 USB 连接。</translation>
    </message>
    <message>
        <source>Unplug the printer and plug it in again. If that does not help, ask the administrator of this computer for permission.</source>
        <extracomment>What to do when the user has no right to open the USB device.</extracomment>
        <translation>请拔下打印机并重新插上。如果仍无效，请向此计算机的管理员申请权限。</translation>
    </message>
    <message>
        <source>Another program is using the printer’s USB connection.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>另一个程序正在使用打印机的 USB 连接。</translation>
    </message>
    <message>
        <source>Close programs that print or scan, then try again.</source>
        <extracomment>What to do when another program is using the printer&apos;s USB connection.</extracomment>
        <translation>请关闭正在打印或扫描的程序，然后重试。</translation>
    </message>
    <message>
        <source>The printer was disconnected or switched off.</source>
        <extracomment>Why a download to a USB printer failed.</extracomment>
        <translation>打印机已断开连接或已关机。</translation>
    </message>
    <message>
        <source>Check its cable and switch it on, then try again.</source>
        <extracomment>What to do when a USB printer was disconnected or switched off.</extracomment>
        <translation>请检查其线缆并打开电源，然后重试。</translation>
    </message>
    <message>
        <source>The printer offers no USB connection that this program can use.</source>
        <extracomment>Why a download to a USB printer failed: it has no USB interface of the kind for printers.</extracomment>
        <translation>打印机没有提供本程序可用的 USB 连接。</translation>
    </message>
    <message>
        <source>The USB connection to the printer failed.</source>
        <extracomment>Why a download to a USB printer failed.</extracomment>
        <translation>与打印机的 USB 连接失败。</translation>
    </message>
    <message>
        <source>The firmware is larger than this computer allows over USB.</source>
        <extracomment>Why a download to a USB printer failed: the kernel of this computer limits a transfer.</extracomment>
        <translation>固件大小超出了此计算机允许通过 USB 传输的大小。</translation>
    </message>
    <message>
        <source>Ask the administrator of this computer to raise “usbcore.usbfs_memory_mb”, then try again.</source>
        <extracomment>What to do when the firmware is larger than this computer allows over USB. The text in quotation marks is a setting and not translated.</extracomment>
        <translation>请让此计算机的管理员调高“usbcore.usbfs_memory_mb”，然后重试。</translation>
    </message>
    <message>
        <source>The printer refused the connection.</source>
        <extracomment>Why a download failed: the network printer is there, and takes no connection.</extracomment>
        <translation>打印机拒绝了连接。</translation>
    </message>
    <message>
        <source>The printer has no address that this program can use.</source>
        <extracomment>Why a download failed: the network printer has an IPv6 address only.</extracomment>
        <translation>打印机没有本程序可用的地址。</translation>
    </message>
    <message>
        <source>Give the printer an IPv4 address in its network settings, then try again.</source>
        <extracomment>What to do when a network printer has an IPv6 address only.</extracomment>
        <translation>请在打印机的网络设置中为其分配 IPv4 地址，然后重试。</translation>
    </message>
    <message>
        <source>The printer did not say which model it is.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>打印机没有告知其型号。</translation>
    </message>
    <message>
        <source>There is no firmware for this model of printer.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>没有适用于此型号打印机的固件。</translation>
    </message>
    <message>
        <source>Ask whoever supports this printer where its firmware is to be had.</source>
        <extracomment>What to do when there is no firmware for a printer.</extracomment>
        <translation>请向此打印机的支持人员询问如何获取其固件。</translation>
    </message>
    <message>
        <source>The printer is no longer in the list.</source>
        <extracomment>Why a download did not begin.</extracomment>
        <translation>打印机已不在列表中。</translation>
    </message>
    <message>
        <source>Wait until it is back, then try again.</source>
        <extracomment>What to do when a printer went before its download began.</extracomment>
        <translation>请等待它重新出现，然后重试。</translation>
    </message>
    <message>
        <source>Stop it with the command “systemctl stop ipp-usb”, then try again.</source>
        <extracomment>What to do when the service &quot;ipp-usb&quot; is using a USB printer. The text in quotation marks is a command and not translated.</extracomment>
        <translation>请用命令“systemctl stop ipp-usb”将其停止，然后重试。</translation>
    </message>
    <message>
        <source>Stop it with the command “systemctl stop cups”, then try again.</source>
        <extracomment>What to do when the service &quot;cups&quot; is using a USB printer. The text in quotation marks is a command and not translated.</extracomment>
        <translation>请用命令“systemctl stop cups”将其停止，然后重试。</translation>
    </message>
    <message>
        <source>The program %1 is using the printer’s USB connection.</source>
        <extracomment>Why a download failed. %1 is the name of a program.</extracomment>
        <translation>程序 %1 正在使用打印机的 USB 连接。</translation>
    </message>
    <message>
        <source>Close %1, then try again.</source>
        <extracomment>What to do when a program is using the USB connection. %1 is its name.</extracomment>
        <translation>请关闭 %1，然后重试。</translation>
    </message>
    <message>
        <source>The driver %1 of this computer is using the printer’s USB connection.</source>
        <extracomment>Why a download failed. %1 is the name of a driver of this computer.</extracomment>
        <translation>此计算机的驱动程序 %1 正在使用打印机的 USB 连接。</translation>
    </message>
    <message>
        <source>Unplug the printer and plug it in again, then try again.</source>
        <extracomment>What to do when a driver of this computer is using a USB printer.</extracomment>
        <translation>请拔下打印机并重新插上，然后重试。</translation>
    </message>
    <message>
        <source>The printer refused the firmware.</source>
        <extracomment>Why a download failed: the printer has received the firmware and does not want it.</extracomment>
        <translation>打印机拒绝了固件。</translation>
    </message>
    <message>
        <source>Switch the printer off and on, then try again. If it refuses again, ask whoever supports this printer.</source>
        <extracomment>What to do when the printer refused the firmware.</extracomment>
        <translation>请关闭并重新打开打印机电源，然后重试。如果再次被拒绝，请咨询此打印机的支持人员。</translation>
    </message>
    <message>
        <source>The printer did not confirm the update.</source>
        <extracomment>Headline of a failed download: the printer has got all of the firmware, and nobody knows whether it has it in its memory now.</extracomment>
        <translation>打印机没有确认更新。</translation>
    </message>
    <message>
        <source>It may still be writing its memory: leave it switched on for a few minutes. Then download the firmware again; a printer that has it is reported as up to date.</source>
        <extracomment>What to do when the printer has got all of the firmware and did not confirm that.</extracomment>
        <translation>它可能仍在写入存储器：请让它保持开机几分钟。然后再次更新；如果已写入固件，会提示打印机已是最新。</translation>
    </message>
    <message>
        <source>Nothing was sent to the printer.</source>
        <extracomment>Headline of a download that ended because the file with the firmware is damaged.</extracomment>
        <translation>未向打印机发送任何内容。</translation>
    </message>
    <message>
        <source>The program %1 is using this printer.</source>
        <extracomment>Why a download failed. %1 is the name of a program and the number of its process, for example &quot;fwupdate (812)&quot;.</extracomment>
        <translation>程序 %1 正在使用此打印机。</translation>
    </message>
    <message>
        <source>Wait until it has finished, then try again.</source>
        <extracomment>What to do when another program of this computer is updating the same printer.</extracomment>
        <translation>请等待其完成，然后重试。</translation>
    </message>
    <message>
        <source>Another program is using this printer.</source>
        <extracomment>Why a download failed: which program it is, is not known.</extracomment>
        <translation>另一个程序正在使用此打印机。</translation>
    </message>
</context>
<context>
    <name>Localizable</name>
    <message>
        <source>NETWORK_PRINTER_CONFIRMATION</source>
        <extracomment>The question before a download to a network printer. Its English is in Localizable_en.ts.</extracomment>
        <translation>要更新此网络打印机的固件吗？期间任何人都无法用它打印，且打印机必须保持开机。</translation>
    </message>
    <message>
        <source>USB_PRINTER_CONFIRMATION</source>
        <extracomment>The question before a download to a printer on a USB cable. Its English is in Localizable_en.ts.</extracomment>
        <translation>要更新此 USB 打印机的固件吗？期间无法打印，且打印机必须保持开机和连接。</translation>
    </message>
    <message>
        <source>A printer is getting new firmware.</source>
        <extracomment>Shown by the desktop, with the program&apos;s name, as what keeps the computer from sleeping or from being shut down.</extracomment>
        <translation>正在更新打印机的固件。</translation>
    </message>
</context>
<context>
    <name>ManualWindow</name>
    <message>
        <source>Manual</source>
        <extracomment>Title of the window that shows the manual, and name of its text.</extracomment>
        <translation>手册</translation>
    </message>
    <message>
        <source>&amp;Find:</source>
        <extracomment>Beside the field to search the manual.</extracomment>
        <translation>查找(&amp;F)：</translation>
    </message>
    <message>
        <source>Find in the manual</source>
        <extracomment>Assistive technology says it of the field to search the manual.</extracomment>
        <translation>在手册中查找</translation>
    </message>
    <message>
        <source>Not found.</source>
        <extracomment>The manual does not have what was typed.</extracomment>
        <translation>未找到。</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the window.</extracomment>
        <translation>关闭(&amp;C)</translation>
    </message>
</context>
<context>
    <name>MenuBar</name>
    <message>
        <source>Menu bar</source>
        <extracomment>What a screen reader calls the menu bar.</extracomment>
        <translation>菜单栏</translation>
    </message>
    <message>
        <source>&amp;Printer</source>
        <extracomment>Menu: what can be done with the selected printer.</extracomment>
        <translation>打印机(&amp;P)</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <extracomment>Menu item: starts the download of new firmware to the selected printer.</extracomment>
        <translation>更新(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <extracomment>Menu item: ends the program.</extracomment>
        <translation>退出(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <extracomment>Menu.</extracomment>
        <translation>帮助(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;Manual</source>
        <extracomment>Menu item: shows the manual.</extracomment>
        <translation>手册(&amp;M)</translation>
    </message>
    <message>
        <source>&amp;Copy diagnostic information</source>
        <extracomment>Menu item: copies what somebody needs to know who is asked for help.</extracomment>
        <translation>复制诊断信息(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <extracomment>Menu item: shows the program&apos;s version, license and libraries.</extracomment>
        <translation>关于(&amp;A)</translation>
    </message>
</context>
<context>
    <name>OutcomeLine</name>
    <message>
        <source>%1 was updated to version %2 at %3.</source>
        <extracomment>the line below the list; %1 is a printer like &quot;Office (10.0.0.5)&quot;, %3 a time of day</extracomment>
        <translation>%1 已于 %3 更新到版本 %2。</translation>
    </message>
</context>
<context>
    <name>PrinterSelectWindow</name>
    <message>
        <source>Printer Firmware Update</source>
        <extracomment>Title of the main window, and the name of the program.</extracomment>
        <translation>打印机固件更新</translation>
    </message>
    <message>
        <source>&amp;Select the printer that is to get new firmware:</source>
        <extracomment>Label above the list of printers.</extracomment>
        <translation>请选择要安装新固件的打印机(&amp;S)：</translation>
    </message>
    <message>
        <source>Printers</source>
        <extracomment>What a screen reader calls the list of printers.</extracomment>
        <translation>打印机</translation>
    </message>
    <message>
        <source>Looking for printers…</source>
        <extracomment>In the list of printers while it is empty.</extracomment>
        <translation>正在查找打印机…</translation>
    </message>
    <message>
        <source>Name</source>
        <extracomment>Column of the list: the name of the printer.</extracomment>
        <translation>名称</translation>
    </message>
    <message>
        <source>Type</source>
        <extracomment>Column of the list: how the printer is connected, &quot;USB&quot; or &quot;Bonjour&quot;.</extracomment>
        <translation>类型</translation>
    </message>
    <message>
        <source>Address or serial number</source>
        <extracomment>Column of the list: the IP address of a network printer, the serial number of a USB printer.</extracomment>
        <translation>地址或序列号</translation>
    </message>
    <message>
        <source>Select a printer first.</source>
        <extracomment>Appears when Download is chosen and no printer is selected.</extracomment>
        <translation>请先选择一台打印机。</translation>
    </message>
    <message>
        <source>Download new firmware to the selected printer</source>
        <extracomment>What a screen reader says of the Download button.</extracomment>
        <translation>更新所选打印机的固件</translation>
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
        <translation>尚未找到打印机。请检查：
• 打印机已开机。
• USB 打印机：线缆两端均已插好。
• 网络打印机：与此计算机处于同一网络。</translation>
    </message>
    <message>
        <source>• The service that finds network printers is not running, so some may be missing. Start avahi-daemon: systemctl start avahi-daemon</source>
        <extracomment>The next line of that list. What stands behind the last colon is a command and stays as it is.</extracomment>
        <translation>• 查找网络打印机的服务未运行，因此可能有遗漏。请启动 avahi-daemon：systemctl start avahi-daemon</translation>
    </message>
    <message>
        <source>Diagnostic information was copied.</source>
        <extracomment>Appears when the diagnostic information is on the clipboard.</extracomment>
        <translation>诊断信息已复制。</translation>
    </message>
    <message>
        <source>The printer is no longer in the list. Wait until it is back, then try again.</source>
        <extracomment>Appears when the printer left the list while the question about its download was on the screen.</extracomment>
        <translation>打印机已不在列表中。请等待它重新出现，然后重试。</translation>
    </message>
</context>
<context>
    <name>ProgressSheet</name>
    <message>
        <source>Updating Firmware</source>
        <extracomment>Title of the sheet that is shown during a download.</extracomment>
        <translation>正在更新固件</translation>
    </message>
    <message>
        <source>Download in progress</source>
        <extracomment>What a screen reader calls the progress bar.</extracomment>
        <translation>正在更新</translation>
    </message>
    <message>
        <source>Do not switch the printer off, and leave it connected until this is done.</source>
        <extracomment>Warning below the progress bar.</extracomment>
        <translation>完成之前，请勿关闭打印机电源，并保持连接。</translation>
    </message>
</context>
<context>
    <name>QtText</name>
    <message>
        <source>A printer without a name</source>
        <extracomment>in place of a printer&apos;s name in a sentence: &quot;%1 was updated to version ...&quot;</extracomment>
        <translation>未命名的打印机</translation>
    </message>
</context>
<context>
    <name>QuitSheet</name>
    <message>
        <source>Quit during a Download</source>
        <extracomment>Title of the sheet that asks before the program ends during a download.</extracomment>
        <translation>更新期间退出</translation>
    </message>
    <message>
        <source>The download to this printer has not ended. If you quit now, the printer may be left without working firmware.</source>
        <extracomment>Below the name of the printer, in the sheet that asks before the program ends.</extracomment>
        <translation>此打印机的更新尚未结束。如果现在退出，打印机可能没有可用的固件。</translation>
    </message>
    <message>
        <source>&amp;Quit anyway</source>
        <extracomment>Button: ends the program although a download runs.</extracomment>
        <translation>仍要退出(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;Keep downloading</source>
        <extracomment>Button: does not end the program; the download goes on.</extracomment>
        <translation>继续更新(&amp;K)</translation>
    </message>
</context>
<context>
    <name>UpToDateSheet</name>
    <message>
        <source>Nothing to Update</source>
        <extracomment>Title of the alert when the printer needs no new firmware.</extracomment>
        <translation>无需更新</translation>
    </message>
    <message>
        <source>The printer is up to date.</source>
        <extracomment>Headline of the alert when the printer needs no new firmware.</extracomment>
        <translation>打印机已是最新。</translation>
    </message>
    <message>
        <source>It already runs this firmware or a newer one. Nothing was changed.</source>
        <extracomment>Below the headline; &quot;it&quot; is the printer.</extracomment>
        <translation>它已在使用此固件或更新的固件。未做任何更改。</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the alert when the printer needs no new firmware.</extracomment>
        <translation>关闭(&amp;C)</translation>
    </message>
</context>
<context>
    <name>VersionsText</name>
    <message>
        <source>Installed version: %1, available version: %2</source>
        <extracomment>%1 and %2 are numbers of versions of the printer&apos;s firmware</extracomment>
        <translation>已安装版本：%1，可用版本：%2</translation>
    </message>
    <message>
        <source>Available version: %1</source>
        <extracomment>%1 is the number of a version; the printer does not tell which one it has</extracomment>
        <translation>可用版本：%1</translation>
    </message>
</context>
</TS>
