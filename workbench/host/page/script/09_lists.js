// Device lists, put together again.

const LISTS_AT_A_TIME = 50;
let currentList = lists.length - 1;

/** The devices of `list` that `other` lacks, by key. A device may be there several times. */
function missingFrom(list, other) {
    const found = [];
    for (const [key, section] of sectionsOf(list.events)) {
        const rest = devicesUnder(other, key).map((device) => JSON.stringify(device));
        for (const device of section.devices) {
            const at = rest.indexOf(JSON.stringify(device));
            if (at >= 0) {
                rest.splice(at, 1);
            } else {
                found.push({ key, device });
            }
        }
    }
    return found;
}

/** What is new in a list and what is gone from it, if there is any. */
function changesOf(index) {
    const [before, now] = [lists[index - 1], lists[index]];
    return index === 0 ? [] : [['New', missingFrom(now, before)], ['Gone', missingFrom(before, now)]]
        .filter(([, found]) => found.length !== 0);
}

function changeText(index) {
    const texts = changesOf(index).map(([word, found]) => `${found.length} ${word.toLowerCase()}`);
    return index === 0 ? '' : texts.join(', ') || 'as before';
}

/** Of very many lists those around the current one are shown. */
function overview() {
    const first = Math.max(Math.min(currentList - LISTS_AT_A_TIME / 2, lists.length - LISTS_AT_A_TIME), 0);
    const rows = lists.slice(first, first + LISTS_AT_A_TIME).map((list) => [
        button({ class: 'link', 'aria-pressed': String(list.index === currentList) },
            () => showList(list.index), `List ${listNumber(list.index)}`),
        timeText(list.events[0].time), String(list.events.length), byteText(bytesOf(list.events)),
        ...[...listKeys].map((key) => String(devicesUnder(list, key).length)),
        changeText(list.index)]);
    return table(['list', 'sent at, UTC', 'parts', 'size', ...[...listKeys].map(visible), 'change'], rows,
        'Devices of each list, by the key under which they were sent');
}

function listInFull(index) {
    const list = lists[index];
    return [element('h3', { id: 'list-title', tabindex: '-1' }, `List ${listNumber(index)} in full `,
        element('small', {}, `${timeText(list.events[0].time)} UTC \u00b7 ${count(list.events.length, 'part')} \u00b7 `,
            byteText(bytesOf(list.events)))),
    changesOf(index).map(([word, found]) => [element('h4', {}, `${word} since list ${listNumber(index - 1)}`),
        deviceTable(found.map(({ key, device }) => ({ list: key, ...device })), null)]),
    [...sectionsOf(list.events)].map(sectionView)];
}

function drawLists() {
    if (lists.length === 0) {
        replaceContent(byId('lists-body'), element('p', { class: 'empty' }, 'No device list was sent.'));
        return;
    }
    replaceContent(byId('lists-body'), overview(), listInFull(currentList));
}

function showList(index, goThere = false) {
    currentList = index;
    drawLists();
    if (goThere) {
        byId('list-title').focus();
        byId('list-title').scrollIntoView({ block: 'start' });
    } else {
        byId('lists-body').querySelector('[aria-pressed=true]').focus();
    }
}
