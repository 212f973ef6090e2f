// What each kind of event holds and what lets it out, in words for people who do not read code.

const BIOS = 992614500;
const EC_LOG = 992614512;
const COMPONENT = 992614518;
const DEVICE_LIST = 992614533;

const NO_CONSENT = 'The user\u2019s agreement to the data clause is not asked for this event.';

const RULES = new Map([
    [BIOS, {
        name: 'BIOS information',
        short: 'BIOS',
        colour: 'bios',
        sends: ['Product: the name of the main board.',
            'String7: the name under which the maker sells the computer.',
            'Version: the version of the BIOS.'],
        when: 'Looked at when the plug-in starts and every 12 hours.',
        gates: ['At least 72 hours have passed since the last one. Its time is kept in the registry, so a restart does not shorten the wait.',
            'The firmware\u2019s table could be read.'],
        masked: ['Nothing is masked: the three texts are sent as the firmware holds them, whole. Letters that the system\u2019s ANSI code page lacks are replaced.'],
        never: ['Serial numbers and other texts of the firmware\u2019s table are not asked for.'],
    }],
    [COMPONENT, {
        name: 'Optimisation component',
        short: 'Optimisation',
        colour: 'component',
        sends: ['mode: always OPEN_MODE.',
            'status: 1 if pop-up blocking or performance mode is on, else 0.',
            'version: the version of the component\u2019s program; empty if it cannot be read.'],
        when: 'Looked at when the plug-in starts and every 24 hours.',
        gates: ['The account that is found for the console\u2019s user has settings of the component.',
            'Both switches could be read there.'],
        masked: ['Which of the two switches is on is not told apart.'],
        never: ['The account\u2019s name and identifier serve to find the settings and are not sent.'],
    }],
    [EC_LOG, {
        name: 'Embedded controller\u2019s log',
        short: 'EC log',
        colour: 'ec',
        sends: ['ECLog: 253 bytes that the computer\u2019s embedded controller keeps, each as 0x and two digits.'],
        when: 'When the firmware raises its event 675, each time anew, without a limit.',
        gates: ['The firmware raised event 675 while the plug-in was listening.',
            'The log could be read: both the call and the firmware answered 0.'],
        masked: ['Nothing is masked or cut: all 253 bytes are sent, whatever number of them the firmware says are in use. What they mean only the maker of the firmware knows.'],
    }],
    [DEVICE_LIST, {
        name: 'Device list',
        short: 'Device list',
        colour: 'devices',
        sends: ['HIDList, BluetoothList, DeviceList: devices that share a container with a removable one. System devices, and devices without a class or a vendor piece, are left out.',
            'PrinterList: the local print queues. DisplayList: the active displays.',
            'Of each: class, name, description, maker, and a short piece that tells vendor and model (of printers: data type and port).',
            'Names are sent as the system has them, except those of Bluetooth devices: a printer or a device may bear the name of a person, a room or a server.',
            'A device that was seen stays in the lists until the plug-in stops, also when it is unplugged.'],
        when: 'Looked at every hour. A long list is sent as several events, its parts, of about 1,000 bytes for each list.',
        gates: ['The suite\u2019s feature switch ReportDeviceList is 3 (asked when the plug-in starts).',
            'The suite\u2019s product properties, where there are any, name the region china (asked when the plug-in starts).',
            'Fewer than 10 lists were sent since the installation. The count is kept in the registry.',
            'At least 24 hours have passed since the plug-in started and since its last list.',
            'The user agreed to the data clause: the stored answer is exactly \u201c1\u201d, asked again before each list.'],
        consent: 'The user\u2019s agreement to the data clause is needed.',
        masked: ['Every text is cut to its first 32 characters (16-bit units).',
            'Bluetooth devices are sent without their names, which people often choose themselves; their descriptions are sent.',
            'Bytes 12 and 13 of a display\u2019s EDID, half of its serial number, are replaced by zeros as soon as it is read. Of the EDID only the maker\u2019s three letters are sent.',
            'Of a printer\u2019s port and data type only 8 characters each are sent.'],
        never: ['Device instance ids, parents and container ids, which may hold serial numbers and Bluetooth addresses, serve to choose the devices and are not sent.'],
    }],
]);

const UNKNOWN = {
    name: 'Unknown event',
    short: 'Unknown',
    colour: 'unknown',
    when: 'No report of the plug-in has this number.',
    consent: 'Nothing is known of its conditions.',
};

const ruleOf = (id) => RULES.get(id) || UNKNOWN;
const kindOf = (id) => (RULES.has(id) ? id : 0);
const KINDS = [...RULES.keys(), 0];

/** A list under its title; null when there is none. */
const titledList = (title, texts, className = null) => (texts ? [element('h4', {}, title),
    element('ul', { class: className }, texts.map((text) => element('li', {}, text)))] : null);

function ruleCard(rule, id) {
    return element('article', { class: `rule ${rule.colour}` },
        element('h3', {}, rule.name, ' ', element('small', {}, `event ${id}`)),
        element('p', { class: rule.consent ? 'consent asked' : 'consent' }, rule.consent || NO_CONSENT),
        titledList('What is sent', rule.sends),
        element('h4', {}, 'When'), element('p', {}, rule.when),
        titledList('What lets it out; all of it must hold', rule.gates),
        titledList('Masked or cut', rule.masked),
        titledList('Kept here', rule.never));
}

function showRules() {
    replaceContent(byId('rules-body'),
        element('p', { class: 'lead' },
            'The events above are all that the plug-in hands to the suite\u2019s event service. Log lines go to the suite\u2019s log and not to that service; they stand beside the events to explain them.'),
        element('div', { class: 'rule-cards' },
            [...RULES].map(([id, rule]) => ruleCard(rule, id))));
}
