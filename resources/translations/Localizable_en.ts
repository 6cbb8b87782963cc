<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en_US">
<context>
    <name>Localizable</name>
    <message>
        <source>USB_PRINTER_CONFIRMATION</source>
        <translation>Download new firmware to this USB printer? It cannot print meanwhile, and must stay switched on and connected.</translation>
    </message>
    <message>
        <source>NETWORK_PRINTER_CONFIRMATION</source>
        <translation>Download new firmware to this network printer? Nobody can print on it meanwhile, and it must stay switched on.</translation>
    </message>
</context>
</TS>
