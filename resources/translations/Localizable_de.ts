<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>Localizable</name>
    <message>
        <source>USB_PRINTER_CONFIRMATION</source>
        <translation>Neue Firmware auf den ausgewählten USB-Drucker laden? Er kann währenddessen nicht drucken und muss eingeschaltet und verbunden bleiben.</translation>
    </message>
    <message>
        <source>NETWORK_PRINTER_CONFIRMATION</source>
        <translation>Neue Firmware auf den ausgewählten Netzwerkdrucker laden? Währenddessen kann niemand auf ihm drucken, und er muss eingeschaltet bleiben.</translation>
    </message>
</context>
</TS>
