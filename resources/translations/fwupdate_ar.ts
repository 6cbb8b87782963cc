<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en_US">
<context>
    <name>ConfirmDownloadSheet</name>
    <message>
        <source>Confirm the Download</source>
        <extracomment>Title of the sheet that asks before a download.</extracomment>
        <translation>تأكيد التحديث</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <extracomment>Button: leaves the printer as it is.</extracomment>
        <translation>لا</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <extracomment>Button: starts the download.</extracomment>
        <translation>نعم</translation>
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
        <source>Check that the printer is switched on, connected and not printing, then try again. The system log names the cause.</source>
        <extracomment>Below the headline: what to do after a download that failed.</extracomment>
        <translation>تأكد من أن الطابعة قيد التشغيل وموصولة ولا تطبع، ثم حاول مرة أخرى. السبب مذكور في سجل النظام.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <extracomment>Button: closes the alert after a download that failed.</extracomment>
        <translation>إغلاق</translation>
    </message>
</context>
<context>
    <name>Localizable</name>
    <message>
        <source>NETWORK_PRINTER_CONFIRMATION</source>
        <extracomment>The question before a download to a network printer. Its English is in Localizable_en.ts.</extracomment>
        <translation>هل تريد تحديث البرنامج الثابت لطابعة الشبكة المحددة؟ لن يتمكن أحد من الطباعة عليها في أثناء ذلك، ويجب أن تبقى قيد التشغيل.</translation>
    </message>
    <message>
        <source>USB_PRINTER_CONFIRMATION</source>
        <extracomment>The question before a download to a printer on a USB cable. Its English is in Localizable_en.ts.</extracomment>
        <translation>هل تريد تحديث البرنامج الثابت لطابعة USB المحددة؟ لن تتمكن من الطباعة في أثناء ذلك، ويجب أن تبقى قيد التشغيل وموصولة.</translation>
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
</context>
<context>
    <name>ProgressSheet</name>
    <message>
        <source>Updating Firmware</source>
        <extracomment>Title of the sheet that is shown during a download.</extracomment>
        <translation>تحديث البرنامج الثابت</translation>
    </message>
    <message>
        <source>New firmware is being downloaded to this printer. It takes a few minutes.</source>
        <extracomment>Below the name of the printer, during a download.</extracomment>
        <translation>يجري تحديث البرنامج الثابت لهذه الطابعة. يستغرق ذلك بضع دقائق.</translation>
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
</TS>
