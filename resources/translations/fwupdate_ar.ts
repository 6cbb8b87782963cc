<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en_US">
<context>
    <name>AboutWindow</name>
    <message>
        <source>About Printer Firmware Update</source>
        <extracomment>Title of a window.</extracomment>
        <translation>حول تحديث البرنامج الثابت للطابعات</translation>
    </message>
    <message>
        <source>Printer Firmware Update</source>
        <extracomment>The name of the program.</extracomment>
        <translation>تحديث البرنامج الثابت للطابعات</translation>
    </message>
    <message>
        <source>Version %1</source>
        <extracomment>%1 is a number like 1.0.0.</extracomment>
        <translation>الإصدار %1</translation>
    </message>
    <message>
        <source>Updates the firmware of Veltra KX350T printers.</source>
        <extracomment>What the program is for.</extracomment>
        <translation>يحدّث البرنامج الثابت لطابعات Veltra KX350T.</translation>
    </message>
    <message>
        <source>Free software under the MIT license.</source>
        <extracomment>Below the name of the program.</extracomment>
        <translation>برنامج حر برخصة MIT.</translation>
    </message>
    <message>
        <source>It uses these libraries:
%1</source>
        <extracomment>%1 is a list of names and versions, each on a line of its own.</extracomment>
        <translation>يستخدم هذه المكتبات:
%1</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the window.</extracomment>
        <translation>إغلاق</translation>
    </message>
</context>
<context>
    <name>ConfirmDownloadSheet</name>
    <message>
        <source>Confirm the Download</source>
        <extracomment>Title of the sheet that asks before a download.</extracomment>
        <translation>تأكيد التحديث</translation>
    </message>
    <message>
        <source>Do &amp;not download</source>
        <extracomment>Button: leaves the printer as it is.</extracomment>
        <translation>عدم التحديث</translation>
    </message>
    <message>
        <source>&amp;Download firmware</source>
        <extracomment>Button: starts the download.</extracomment>
        <translation>تحديث البرنامج الثابت</translation>
    </message>
</context>
<context>
    <name>DownloadNotification</name>
    <message>
        <source>Printer updated</source>
        <extracomment>Title of a desktop notification after a download.</extracomment>
        <translation>حُدِّثت الطابعة</translation>
    </message>
    <message>
        <source>%1 was updated to version %2.</source>
        <extracomment>Text of a desktop notification; %1 is the printer, like &quot;Office (10.0.0.5)&quot;, %2 the number of the firmware&apos;s version.</extracomment>
        <translation>حُدِّثت %1 إلى الإصدار %2.</translation>
    </message>
    <message>
        <source>Printer already up to date</source>
        <extracomment>Title of a desktop notification after a download that was not needed.</extracomment>
        <translation>الطابعة محدَّثة بالفعل</translation>
    </message>
    <message>
        <source>%1 already runs this firmware or a newer one. Nothing was changed.</source>
        <extracomment>Text of a desktop notification; %1 is the printer, like &quot;Office (10.0.0.5)&quot;.</extracomment>
        <translation>تستخدم %1 بالفعل هذا البرنامج الثابت أو إصدارًا أحدث. لم يتغير شيء.</translation>
    </message>
    <message>
        <source>Printer not updated</source>
        <extracomment>Title of a desktop notification after a download that failed.</extracomment>
        <translation>لم تُحدَّث الطابعة</translation>
    </message>
    <message>
        <source>The firmware of %1 was not updated. The program&apos;s window says what to do.</source>
        <extracomment>Text of a desktop notification; %1 is the printer, like &quot;Office (10.0.0.5)&quot;.</extracomment>
        <translation>لم يُحدَّث البرنامج الثابت في %1. تبيّن نافذة البرنامج ما ينبغي فعله.</translation>
    </message>
</context>
<context>
    <name>DownloadProgress</name>
    <message>
        <source>Sending %1</source>
        <extracomment>what happens now; %1 is an amount of data with its unit, like 8.0 MB</extracomment>
        <translation>جارٍ إرسال %1</translation>
    </message>
    <message>
        <source>The printer takes longer than expected to write its memory</source>
        <extracomment>what happens now: the time for it is over, and the printer has not answered</extracomment>
        <translation>تستغرق الطابعة وقتًا أطول من المتوقع للكتابة في ذاكرتها</translation>
    </message>
    <message>
        <source>Connecting to the printer</source>
        <extracomment>what happens now</extracomment>
        <translation>جارٍ الاتصال بالطابعة</translation>
    </message>
    <message>
        <source>Asking the printer for its version</source>
        <extracomment>what happens now: the version is that of the printer&apos;s firmware</extracomment>
        <translation>جارٍ سؤال الطابعة عن إصدارها</translation>
    </message>
    <message>
        <source>Choosing the firmware</source>
        <extracomment>what happens now</extracomment>
        <translation>جارٍ اختيار البرنامج الثابت</translation>
    </message>
    <message>
        <source>The printer has not answered for more than 30 seconds. Check that it is switched on, connected and not busy. No firmware has been sent yet: you can quit and try again.</source>
        <extracomment>advice while a printer is asked for its version</extracomment>
        <translation>لم تستجب الطابعة منذ أكثر من نصف دقيقة. تأكد من أنها قيد التشغيل وموصولة وغير مشغولة. لم يُرسَل أي برنامج ثابت بعد: يمكنك الإنهاء والمحاولة مرة أخرى.</translation>
    </message>
    <message>
        <source>The printer has not taken any data for more than 30 seconds. Leave it switched on, and check that it is connected. If nothing changes in a few minutes, quit and try again.</source>
        <extracomment>advice while firmware is being sent</extracomment>
        <translation>لم تستقبل الطابعة أي بيانات منذ أكثر من نصف دقيقة. اتركها قيد التشغيل وتأكد من أنها موصولة. إذا لم يتغير شيء خلال بضع دقائق فأنهِ البرنامج وحاول مرة أخرى.</translation>
    </message>
    <message>
        <source>The printer has not answered since it got the firmware. Leave it switched on: it may still be writing. Once it is ready, quit and update it again to see whether it is up to date.</source>
        <extracomment>advice when the printer has all of the firmware, and its time for writing is over</extracomment>
        <translation>لم تستجب الطابعة منذ أن تلقت البرنامج الثابت. اتركها قيد التشغيل: ربما لا تزال تكتب. عندما تصبح جاهزة، أنهِ البرنامج وحدّثها مرة أخرى لترى هل هي محدَّثة.</translation>
    </message>
    <message numerus="yes">
        <source>The printer is writing its memory: this may take up to %n second(s)</source>
        <extracomment>what happens now; the time is below a minute</extracomment>
        <translation>
            <numerusform>تكتب الطابعة في ذاكرتها: قد يستغرق ذلك أقل من ثانية</numerusform>
            <numerusform>تكتب الطابعة في ذاكرتها: قد يستغرق ذلك حتى ثانية واحدة</numerusform>
            <numerusform>تكتب الطابعة في ذاكرتها: قد يستغرق ذلك حتى ثانيتين</numerusform>
            <numerusform>تكتب الطابعة في ذاكرتها: قد يستغرق ذلك حتى %n ثوانٍ</numerusform>
            <numerusform>تكتب الطابعة في ذاكرتها: قد يستغرق ذلك حتى %n ثانية</numerusform>
            <numerusform>تكتب الطابعة في ذاكرتها: قد يستغرق ذلك حتى %n ثانية</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The printer is writing its memory: this may take up to %n minute(s)</source>
        <extracomment>what happens now</extracomment>
        <translation>
            <numerusform>تكتب الطابعة في ذاكرتها: قد يستغرق ذلك أقل من دقيقة</numerusform>
            <numerusform>تكتب الطابعة في ذاكرتها: قد يستغرق ذلك حتى دقيقة واحدة</numerusform>
            <numerusform>تكتب الطابعة في ذاكرتها: قد يستغرق ذلك حتى دقيقتين</numerusform>
            <numerusform>تكتب الطابعة في ذاكرتها: قد يستغرق ذلك حتى %n دقائق</numerusform>
            <numerusform>تكتب الطابعة في ذاكرتها: قد يستغرق ذلك حتى %n دقيقة</numerusform>
            <numerusform>تكتب الطابعة في ذاكرتها: قد يستغرق ذلك حتى %n دقيقة</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>FailedSheet</name>
    <message>
        <source>Download Failed</source>
        <extracomment>Title of the alert after a download that failed.</extracomment>
        <translation>فشل التحديث</translation>
    </message>
    <message>
        <source>The firmware was not updated.</source>
        <extracomment>Headline of the alert after a download that failed.</extracomment>
        <translation>لم يُحدَّث البرنامج الثابت.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the alert after a download that failed.</extracomment>
        <translation>إغلاق</translation>
    </message>
    <message>
        <source>Log of this download</source>
        <extracomment>Name of the text with the log of a failed download, for screen readers.</extracomment>
        <translation>سجل هذا التحديث</translation>
    </message>
    <message>
        <source>&amp;Details</source>
        <extracomment>Button: shows the log of a failed download in the alert, and hides it again.</extracomment>
        <translation>التفاصيل</translation>
    </message>
    <message>
        <source>C&amp;opy details</source>
        <extracomment>Button: copies cause and log of a failed download to the clipboard.</extracomment>
        <translation>نسخ التفاصيل</translation>
    </message>
    <message>
        <source>Details c&amp;opied</source>
        <extracomment>The same button when it has copied them.</extracomment>
        <translation>نُسخت التفاصيل</translation>
    </message>
</context>
<context>
    <name>FailureCause</name>
    <message>
        <source>Check that the printer is switched on, connected and not printing, then try again.</source>
        <extracomment>What to do after a failed download.</extracomment>
        <translation>تأكد من أن الطابعة قيد التشغيل وموصولة ولا تطبع، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Check that the printer is switched on and on the same network as this computer, then try again.</source>
        <extracomment>What to do after a failed download to a network printer.</extracomment>
        <translation>تأكد من أن الطابعة قيد التشغيل وعلى الشبكة نفسها مع هذا الحاسوب، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Switch the printer off and on, then try again.</source>
        <extracomment>What to do after a failed download.</extracomment>
        <translation>أوقف تشغيل الطابعة ثم شغّلها، وحاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Wait until the printer has finished its other work, or switch it off and on, then try again.</source>
        <extracomment>What to do after a failed download: wait, or else restart the printer.</extracomment>
        <translation>انتظر حتى تنهي الطابعة أعمالها الأخرى، أو أوقف تشغيلها ثم شغّلها، وحاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Install the printer’s firmware again, then try again.</source>
        <extracomment>What to do after a failed download: the firmware file came with a package, and has to be installed once more.</extracomment>
        <translation>أعد تثبيت البرنامج الثابت للطابعة، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Install this program again, then try again.</source>
        <extracomment>What to do after a failed download: files of this program are missing or damaged.</extracomment>
        <translation>أعد تثبيت هذا البرنامج، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Connect the printer’s cable directly to this computer, without a hub, then try again.</source>
        <extracomment>What to do after a failed download to a USB printer.</extracomment>
        <translation>صِل كابل الطابعة بهذا الحاسوب مباشرةً دون موزّع، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Close other programs, then try again.</source>
        <extracomment>What to do after a failed download: the computer lacks memory or other resources.</extracomment>
        <translation>أغلق البرامج الأخرى، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Try again. If it fails again, send a copy of the details to whoever supports this printer.</source>
        <extracomment>What to do after a failed download: &quot;the details&quot; are the part of this window with the log.</extracomment>
        <translation>حاول مرة أخرى. إذا تكرر الفشل فأرسل نسخة من التفاصيل إلى من يقدّم الدعم لهذه الطابعة.</translation>
    </message>
    <message>
        <source>The connection to the printer was lost.</source>
        <extracomment>Why a download failed: an established connection broke.</extracomment>
        <translation>انقطع الاتصال بالطابعة.</translation>
    </message>
    <message>
        <source>The printer cannot be reached over the network.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>يتعذر الوصول إلى الطابعة عبر الشبكة.</translation>
    </message>
    <message>
        <source>The printer did not answer.</source>
        <extracomment>Why a download failed: the printer remained silent.</extracomment>
        <translation>لم تستجب الطابعة.</translation>
    </message>
    <message>
        <source>The printer stopped taking data.</source>
        <extracomment>Why a download failed: the printer is connected, and takes no more data.</extracomment>
        <translation>توقفت الطابعة عن استقبال البيانات.</translation>
    </message>
    <message>
        <source>The printer closed the connection.</source>
        <extracomment>Why a download failed: another computer or program has closed an established connection.</extracomment>
        <translation>أغلقت الطابعة الاتصال.</translation>
    </message>
    <message>
        <source>The printer answered something that this program does not understand.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>أرسلت الطابعة ردًا لا يفهمه هذا البرنامج.</translation>
    </message>
    <message>
        <source>This computer cannot open another connection.</source>
        <extracomment>Why a download failed: too many files or connections are open on this computer.</extracomment>
        <translation>لا يستطيع هذا الحاسوب فتح اتصال آخر.</translation>
    </message>
    <message>
        <source>This computer does not allow the connection.</source>
        <extracomment>Why a download failed: a firewall on this computer, for example.</extracomment>
        <translation>لا يسمح هذا الحاسوب بالاتصال.</translation>
    </message>
    <message>
        <source>Allow it in the settings of this computer’s firewall, then try again.</source>
        <extracomment>What to do when this computer does not allow the connection to the printer.</extracomment>
        <translation>اسمح به في إعدادات الجدار الناري لهذا الحاسوب، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>This computer ran out of memory.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>نفدت ذاكرة هذا الحاسوب.</translation>
    </message>
    <message>
        <source>This program met an error of its own.</source>
        <extracomment>Why a download failed: a fault of this program, not of the printer.</extracomment>
        <translation>حدث خطأ داخلي في هذا البرنامج.</translation>
    </message>
    <message>
        <source>The file with the firmware is missing.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>ملف البرنامج الثابت مفقود.</translation>
    </message>
    <message>
        <source>The file with the firmware cannot be read.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>تتعذر قراءة ملف البرنامج الثابت.</translation>
    </message>
    <message>
        <source>The file with the firmware is damaged.</source>
        <extracomment>Why a download failed, or why nothing was sent.</extracomment>
        <translation>ملف البرنامج الثابت تالف.</translation>
    </message>
    <message>
        <source>Files of this program are missing.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>بعض ملفات هذا البرنامج مفقودة.</translation>
    </message>
    <message>
        <source>You are not permitted to use the printer’s USB connection.</source>
        <extracomment>Why a download failed: the user has no right to open the USB device.</extracomment>
        <translation>لا تملك إذنًا باستخدام اتصال USB الخاص بالطابعة.</translation>
    </message>
    <message>
        <source>Unplug the printer and plug it in again. If that does not help, ask the administrator of this computer for permission.</source>
        <extracomment>What to do when the user has no right to open the USB device.</extracomment>
        <translation>افصل الطابعة ثم صِلها من جديد. إذا لم يُجدِ ذلك فاطلب الإذن من مدير هذا الحاسوب.</translation>
    </message>
    <message>
        <source>Another program is using the printer’s USB connection.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>يستخدم برنامج آخر اتصال USB الخاص بالطابعة.</translation>
    </message>
    <message>
        <source>Close programs that print or scan, then try again.</source>
        <extracomment>What to do when another program is using the printer&apos;s USB connection.</extracomment>
        <translation>أغلق البرامج التي تطبع أو تمسح ضوئيًا، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>The printer was disconnected or switched off.</source>
        <extracomment>Why a download to a USB printer failed.</extracomment>
        <translation>فُصلت الطابعة أو أُوقف تشغيلها.</translation>
    </message>
    <message>
        <source>Check its cable and switch it on, then try again.</source>
        <extracomment>What to do when a USB printer was disconnected or switched off.</extracomment>
        <translation>تحقق من كابلها وشغّلها، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>The printer offers no USB connection that this program can use.</source>
        <extracomment>Why a download to a USB printer failed: it has no USB interface of the kind for printers.</extracomment>
        <translation>لا توفر الطابعة اتصال USB يمكن لهذا البرنامج استخدامه.</translation>
    </message>
    <message>
        <source>The USB connection to the printer failed.</source>
        <extracomment>Why a download to a USB printer failed.</extracomment>
        <translation>فشل اتصال USB بالطابعة.</translation>
    </message>
    <message>
        <source>The firmware is larger than this computer allows over USB.</source>
        <extracomment>Why a download to a USB printer failed: the kernel of this computer limits a transfer.</extracomment>
        <translation>البرنامج الثابت أكبر مما يسمح به هذا الحاسوب عبر USB.</translation>
    </message>
    <message>
        <source>Ask the administrator of this computer to raise “usbcore.usbfs_memory_mb”, then try again.</source>
        <extracomment>What to do when the firmware is larger than this computer allows over USB. The text in quotation marks is a setting and not translated.</extracomment>
        <translation>اطلب من مدير هذا الحاسوب رفع قيمة ”usbcore.usbfs_memory_mb“، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>The printer refused the connection.</source>
        <extracomment>Why a download failed: the network printer is there, and takes no connection.</extracomment>
        <translation>رفضت الطابعة الاتصال.</translation>
    </message>
    <message>
        <source>The printer has no address that this program can use.</source>
        <extracomment>Why a download failed: the network printer has an IPv6 address only.</extracomment>
        <translation>ليس للطابعة عنوان يمكن لهذا البرنامج استخدامه.</translation>
    </message>
    <message>
        <source>Give the printer an IPv4 address in its network settings, then try again.</source>
        <extracomment>What to do when a network printer has an IPv6 address only.</extracomment>
        <translation>امنح الطابعة عنوان IPv4 في إعدادات شبكتها، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>The printer did not say which model it is.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>لم تُفصح الطابعة عن طرازها.</translation>
    </message>
    <message>
        <source>There is no firmware for this model of printer.</source>
        <extracomment>Why a download failed.</extracomment>
        <translation>لا يوجد برنامج ثابت لهذا الطراز من الطابعات.</translation>
    </message>
    <message>
        <source>Ask whoever supports this printer where its firmware is to be had.</source>
        <extracomment>What to do when there is no firmware for a printer.</extracomment>
        <translation>اسأل من يقدّم الدعم لهذه الطابعة عن مكان الحصول على برنامجها الثابت.</translation>
    </message>
    <message>
        <source>The printer is no longer in the list.</source>
        <extracomment>Why a download did not begin.</extracomment>
        <translation>لم تعد الطابعة في القائمة.</translation>
    </message>
    <message>
        <source>Wait until it is back, then try again.</source>
        <extracomment>What to do when a printer went before its download began.</extracomment>
        <translation>انتظر حتى تعود، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Stop it with the command “systemctl stop ipp-usb”, then try again.</source>
        <extracomment>What to do when the service &quot;ipp-usb&quot; is using a USB printer. The text in quotation marks is a command and not translated.</extracomment>
        <translation>أوقفه بالأمر ”systemctl stop ipp-usb“، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Stop it with the command “systemctl stop cups”, then try again.</source>
        <extracomment>What to do when the service &quot;cups&quot; is using a USB printer. The text in quotation marks is a command and not translated.</extracomment>
        <translation>أوقفه بالأمر ”systemctl stop cups“، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>The program %1 is using the printer’s USB connection.</source>
        <extracomment>Why a download failed. %1 is the name of a program.</extracomment>
        <translation>يستخدم البرنامج %1 اتصال USB الخاص بالطابعة.</translation>
    </message>
    <message>
        <source>Close %1, then try again.</source>
        <extracomment>What to do when a program is using the USB connection. %1 is its name.</extracomment>
        <translation>أغلق %1، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>The driver %1 of this computer is using the printer’s USB connection.</source>
        <extracomment>Why a download failed. %1 is the name of a driver of this computer.</extracomment>
        <translation>يستخدم برنامج التشغيل %1 في هذا الحاسوب اتصال USB الخاص بالطابعة.</translation>
    </message>
    <message>
        <source>Unplug the printer and plug it in again, then try again.</source>
        <extracomment>What to do when a driver of this computer is using a USB printer.</extracomment>
        <translation>افصل الطابعة ثم صِلها من جديد، وحاول مرة أخرى.</translation>
    </message>
    <message>
        <source>The printer refused the firmware.</source>
        <extracomment>Why a download failed: the printer has received the firmware and does not want it.</extracomment>
        <translation>رفضت الطابعة البرنامج الثابت.</translation>
    </message>
    <message>
        <source>Switch the printer off and on, then try again. If it refuses again, ask whoever supports this printer.</source>
        <extracomment>What to do when the printer refused the firmware.</extracomment>
        <translation>أوقف تشغيل الطابعة ثم شغّلها، وحاول مرة أخرى. إذا رفضت ثانيةً فاسأل من يقدّم الدعم لهذه الطابعة.</translation>
    </message>
    <message>
        <source>The printer did not confirm the update.</source>
        <extracomment>Headline of a failed download: the printer has got all of the firmware, and nobody knows whether it has it in its memory now.</extracomment>
        <translation>لم تؤكد الطابعة التحديث.</translation>
    </message>
    <message>
        <source>It may still be writing its memory: leave it switched on for a few minutes. Then download the firmware again; a printer that has it is reported as up to date.</source>
        <extracomment>What to do when the printer has got all of the firmware and did not confirm that.</extracomment>
        <translation>ربما لا تزال تكتب في ذاكرتها: اتركها قيد التشغيل بضع دقائق. ثم حدّثها مرة أخرى؛ فإن كان البرنامج الثابت لديها فسيُذكر أنها محدَّثة.</translation>
    </message>
    <message>
        <source>Nothing was sent to the printer.</source>
        <extracomment>Headline of a download that ended because the file with the firmware is damaged.</extracomment>
        <translation>لم يُرسَل أي شيء إلى الطابعة.</translation>
    </message>
    <message>
        <source>The program %1 is using this printer.</source>
        <extracomment>Why a download failed. %1 is the name of a program and the number of its process, for example &quot;fwupdate (812)&quot;.</extracomment>
        <translation>يستخدم البرنامج %1 هذه الطابعة.</translation>
    </message>
    <message>
        <source>Wait until it has finished, then try again.</source>
        <extracomment>What to do when another program of this computer is updating the same printer.</extracomment>
        <translation>انتظر حتى ينتهي، ثم حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Another program is using this printer.</source>
        <extracomment>Why a download failed: which program it is, is not known.</extracomment>
        <translation>يستخدم برنامج آخر هذه الطابعة.</translation>
    </message>
</context>
<context>
    <name>Localizable</name>
    <message>
        <source>NETWORK_PRINTER_CONFIRMATION</source>
        <extracomment>The question before a download to a network printer. Its English is in Localizable_en.ts.</extracomment>
        <translation>هل تريد تحديث البرنامج الثابت لطابعة الشبكة هذه؟ لن يتمكن أحد من الطباعة عليها في أثناء ذلك، ويجب أن تبقى قيد التشغيل.</translation>
    </message>
    <message>
        <source>USB_PRINTER_CONFIRMATION</source>
        <extracomment>The question before a download to a printer on a USB cable. Its English is in Localizable_en.ts.</extracomment>
        <translation>هل تريد تحديث البرنامج الثابت لطابعة USB هذه؟ لن تتمكن من الطباعة في أثناء ذلك، ويجب أن تبقى قيد التشغيل وموصولة.</translation>
    </message>
    <message>
        <source>A printer is getting new firmware.</source>
        <extracomment>Shown by the desktop, with the program&apos;s name, as what keeps the computer from sleeping or from being shut down.</extracomment>
        <translation>يجري تحديث البرنامج الثابت لطابعة.</translation>
    </message>
</context>
<context>
    <name>ManualWindow</name>
    <message>
        <source>Manual</source>
        <extracomment>Title of the window that shows the manual, and name of its text.</extracomment>
        <translation>الدليل</translation>
    </message>
    <message>
        <source>&amp;Find:</source>
        <extracomment>Beside the field to search the manual.</extracomment>
        <translation>بحث:</translation>
    </message>
    <message>
        <source>Find in the manual</source>
        <extracomment>Assistive technology says it of the field to search the manual.</extracomment>
        <translation>البحث في الدليل</translation>
    </message>
    <message>
        <source>Not found.</source>
        <extracomment>The manual does not have what was typed.</extracomment>
        <translation>لم يُعثَر عليه.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the window.</extracomment>
        <translation>إغلاق</translation>
    </message>
</context>
<context>
    <name>MenuBar</name>
    <message>
        <source>Menu bar</source>
        <extracomment>What a screen reader calls the menu bar.</extracomment>
        <translation>شريط القوائم</translation>
    </message>
    <message>
        <source>&amp;Printer</source>
        <extracomment>Menu: what can be done with the selected printer.</extracomment>
        <translation>الطابعة</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <extracomment>Menu item: starts the download of new firmware to the selected printer.</extracomment>
        <translation>تحديث</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <extracomment>Menu item: ends the program.</extracomment>
        <translation>إنهاء</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <extracomment>Menu.</extracomment>
        <translation>مساعدة</translation>
    </message>
    <message>
        <source>&amp;Manual</source>
        <extracomment>Menu item: shows the manual.</extracomment>
        <translation>الدليل</translation>
    </message>
    <message>
        <source>&amp;Copy diagnostic information</source>
        <extracomment>Menu item: copies what somebody needs to know who is asked for help.</extracomment>
        <translation>نسخ معلومات التشخيص</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <extracomment>Menu item: shows the program&apos;s version, license and libraries.</extracomment>
        <translation>حول البرنامج</translation>
    </message>
</context>
<context>
    <name>OutcomeLine</name>
    <message>
        <source>%1 was updated to version %2 at %3.</source>
        <extracomment>the line below the list; %1 is a printer like &quot;Office (10.0.0.5)&quot;, %3 a time of day</extracomment>
        <translation>حُدِّثت %1 إلى الإصدار %2 في الساعة %3.</translation>
    </message>
</context>
<context>
    <name>PrinterSelectWindow</name>
    <message>
        <source>Printer Firmware Update</source>
        <extracomment>Title of the main window, and the name of the program.</extracomment>
        <translation>تحديث البرنامج الثابت للطابعات</translation>
    </message>
    <message>
        <source>&amp;Select the printer that is to get new firmware:</source>
        <extracomment>Label above the list of printers.</extracomment>
        <translation>اختر الطابعة التي ستحصل على برنامج ثابت جديد:</translation>
    </message>
    <message>
        <source>Printers</source>
        <extracomment>What a screen reader calls the list of printers.</extracomment>
        <translation>الطابعات</translation>
    </message>
    <message>
        <source>Looking for printers…</source>
        <extracomment>In the list of printers while it is empty.</extracomment>
        <translation>جارٍ البحث عن طابعات…</translation>
    </message>
    <message>
        <source>Name</source>
        <extracomment>Column of the list: the name of the printer.</extracomment>
        <translation>الاسم</translation>
    </message>
    <message>
        <source>Type</source>
        <extracomment>Column of the list: how the printer is connected, &quot;USB&quot; or &quot;Bonjour&quot;.</extracomment>
        <translation>النوع</translation>
    </message>
    <message>
        <source>Address or serial number</source>
        <extracomment>Column of the list: the IP address of a network printer, the serial number of a USB printer.</extracomment>
        <translation>العنوان أو الرقم التسلسلي</translation>
    </message>
    <message>
        <source>Select a printer first.</source>
        <extracomment>Appears when Download is chosen and no printer is selected.</extracomment>
        <translation>اختر طابعة أولًا.</translation>
    </message>
    <message>
        <source>Download new firmware to the selected printer</source>
        <extracomment>What a screen reader says of the Download button.</extracomment>
        <translation>تحديث البرنامج الثابت للطابعة المحددة</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <extracomment>Button: starts the download of new firmware to the selected printer.</extracomment>
        <translation>تحديث</translation>
    </message>
    <message>
        <source>No printer has been found yet. Please check:
• The printer is switched on.
• A USB printer: its cable is plugged in at both ends.
• A network printer: it is on the same network as this computer.</source>
        <extracomment>Shown in the empty list after ten seconds, instead of “Looking for printers…”. Four lines.</extracomment>
        <translation>لم يُعثَر على أي طابعة بعد. يُرجى التحقق مما يلي:
• الطابعة قيد التشغيل.
• طابعة USB: كابلها موصول من طرفيه.
• طابعة شبكة: هي على الشبكة نفسها مع هذا الحاسوب.</translation>
    </message>
    <message>
        <source>• The service that finds network printers is not running, so some may be missing. Start avahi-daemon: systemctl start avahi-daemon</source>
        <extracomment>The next line of that list. What stands behind the last colon is a command and stays as it is.</extracomment>
        <translation>• الخدمة التي تعثر على طابعات الشبكة لا تعمل، لذا قد تغيب بعضها. شغّل avahi-daemon:‏ ⁦systemctl&#xa0;start&#xa0;avahi-daemon⁩</translation>
    </message>
    <message>
        <source>Diagnostic information was copied.</source>
        <extracomment>Appears when the diagnostic information is on the clipboard.</extracomment>
        <translation>نُسخت معلومات التشخيص.</translation>
    </message>
    <message>
        <source>The printer is no longer in the list. Wait until it is back, then try again.</source>
        <extracomment>Appears when the printer left the list while the question about its download was on the screen.</extracomment>
        <translation>لم تعد الطابعة في القائمة. انتظر حتى تعود، ثم حاول مرة أخرى.</translation>
    </message>
</context>
<context>
    <name>ProgressSheet</name>
    <message>
        <source>Updating Firmware</source>
        <extracomment>Title of the sheet that is shown during a download.</extracomment>
        <translation>تحديث البرنامج الثابت</translation>
    </message>
    <message>
        <source>Download in progress</source>
        <extracomment>What a screen reader calls the progress bar.</extracomment>
        <translation>التحديث جارٍ</translation>
    </message>
    <message>
        <source>Do not switch the printer off, and leave it connected until this is done.</source>
        <extracomment>Warning below the progress bar.</extracomment>
        <translation>لا توقف تشغيل الطابعة واتركها موصولة حتى يكتمل ذلك.</translation>
    </message>
</context>
<context>
    <name>QtText</name>
    <message>
        <source>A printer without a name</source>
        <extracomment>in place of a printer&apos;s name in a sentence: &quot;%1 was updated to version ...&quot;</extracomment>
        <translation>طابعة بلا اسم</translation>
    </message>
</context>
<context>
    <name>QuitSheet</name>
    <message>
        <source>Quit during a Download</source>
        <extracomment>Title of the sheet that asks before the program ends during a download.</extracomment>
        <translation>الإنهاء أثناء التحديث</translation>
    </message>
    <message>
        <source>The download to this printer has not ended. If you quit now, the printer may be left without working firmware.</source>
        <extracomment>Below the name of the printer, in the sheet that asks before the program ends.</extracomment>
        <translation>لم ينتهِ تحديث هذه الطابعة. إذا أنهيت البرنامج الآن فقد تبقى الطابعة دون برنامج ثابت يعمل.</translation>
    </message>
    <message>
        <source>&amp;Quit anyway</source>
        <extracomment>Button: ends the program although a download runs.</extracomment>
        <translation>إنهاء على أي حال</translation>
    </message>
    <message>
        <source>&amp;Keep downloading</source>
        <extracomment>Button: does not end the program; the download goes on.</extracomment>
        <translation>متابعة التحديث</translation>
    </message>
</context>
<context>
    <name>UpToDateSheet</name>
    <message>
        <source>Nothing to Update</source>
        <extracomment>Title of the alert when the printer needs no new firmware.</extracomment>
        <translation>لا شيء للتحديث</translation>
    </message>
    <message>
        <source>The printer is up to date.</source>
        <extracomment>Headline of the alert when the printer needs no new firmware.</extracomment>
        <translation>الطابعة محدَّثة.</translation>
    </message>
    <message>
        <source>It already runs this firmware or a newer one. Nothing was changed.</source>
        <extracomment>Below the headline; &quot;it&quot; is the printer.</extracomment>
        <translation>تستخدم بالفعل هذا البرنامج الثابت أو إصدارًا أحدث. لم يتغير شيء.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the alert when the printer needs no new firmware.</extracomment>
        <translation>إغلاق</translation>
    </message>
</context>
<context>
    <name>VersionsText</name>
    <message>
        <source>Installed version: %1, available version: %2</source>
        <extracomment>%1 and %2 are numbers of versions of the printer&apos;s firmware</extracomment>
        <translation>الإصدار المثبّت: %1، الإصدار المتاح: %2</translation>
    </message>
    <message>
        <source>Available version: %1</source>
        <extracomment>%1 is the number of a version; the printer does not tell which one it has</extracomment>
        <translation>الإصدار المتاح: %1</translation>
    </message>
</context>
</TS>
