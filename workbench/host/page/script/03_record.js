// The record, and what can be told from it.

const record = JSON.parse(byId('record').textContent);

/** The devices of one chunk; null when it is not an array of objects with texts. */
function devicesOf(chunk) {
    try {
        const parsed = JSON.parse(chunk);
        const isDevice = (device) => device !== null && typeof device === 'object' &&
            !Array.isArray(device) &&
            Object.values(device).every((value) => typeof value === 'string');
        return Array.isArray(parsed) && parsed.every(isDevice) ? parsed : null;
    } catch {
        return null;
    }
}

const events = record.events.map((event, index) => ({
    index,
    kind: kindOf(event.id),
    list: null,
    found: null,
    ...event,
    fields: event.fields.map(([key, value, bytes]) => ({ key, value, bytes })),
}));
const bytesOf = (some) => some.reduce((sum, event) => sum + event.bytes, 0);

const lines = record.log.map((line, index) => ({ index, ...line }));

/** Each device list with its events, in order. */
const lists = [];
for (const event of events) {
    if (event.list !== null) {
        (lists[event.list] = lists[event.list] || { index: event.list, events: [] }).events.push(event);
    }
}

const knowsNumbers = record.firstList !== null;
const listNumber = (index) => index + (knowsNumbers ? record.firstList : 1);

/** The keys of all lists, in the order of their first occurrence. */
const listKeys = new Set(lists.flatMap((list) => list.events)
    .flatMap((event) => event.fields.map((field) => field.key)));

/** What parts of a list say under each key: devices, bytes, and the chunks that could not be read. */
function sectionsOf(parts) {
    const sections = new Map();
    for (const field of parts.flatMap((event) => event.fields)) {
        const section = sections.get(field.key) || { devices: [], bytes: 0, unreadable: [] };
        const devices = devicesOf(field.value);
        section.devices.push(...(devices || []));
        section.bytes += field.bytes;
        if (devices === null) {
            section.unreadable.push(field.value);
        }
        sections.set(field.key, section);
    }
    return sections;
}

/** All devices of a list under one key. */
function devicesUnder(list, key) {
    const section = sectionsOf(list.events).get(key);
    return section ? section.devices : [];
}

/** The last event of the same kind before this one; parts of one device list count as one. */
function previousOf(event) {
    return events.slice(0, event.index).findLast((other) => other.id === event.id &&
        (event.list === null || other.list !== event.list));
}

/** One line that tells the event from others. */
function summaryOf(event) {
    if (event.id === DEVICE_LIST) {
        const { list } = event;
        const parts = lists[list].events;
        const keys = event.fields.map((field) => field.key.replace(/List$/, '')).join(', ');
        return `List ${listNumber(list)}` + (parts.length > 1
            ? `, part ${parts.indexOf(event) + 1} of ${parts.length}: ` : ': ') + keys;
    }
    if (event.id === EC_LOG) {
        return event.fields.map((field) => `${field.key}, ${field.value.length} characters`).join(' \u00b7 ');
    }
    return event.fields.map((field) => (event.id === COMPONENT ? `${field.key} ` : '') +
        (field.value || '(empty)')).join(' \u00b7 ');
}

/** The bytes behind "0x0a0x00..."; null when the text is not of that form. */
function bytesOfHex(text) {
    return /^(0x[0-9a-f]{2})+$/.test(text)
        ? text.match(/0x../g).map((byte) => parseInt(byte, 16)) : null;
}

/** All that a search looks at, in lower case; device texts as they are, without JSON's escapes. */
function searchTextOf(event) {
    if (event.found === null) {
        const values = event.fields.flatMap((field) => {
            const devices = event.id === DEVICE_LIST ? devicesOf(field.value) : null;
            return [field.key, ...(devices ? devices.flatMap(Object.values) : [field.value])];
        });
        event.found = [event.id, ruleOf(event.id).name, timeText(event.time), summaryOf(event),
            ...values].join('\n').toLowerCase();
    }
    return event.found;
}

const wordsOf = (text) => text.toLowerCase().split(/\s+/).filter((word) => word !== '');
