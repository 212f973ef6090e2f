// The log beside the events.

const LOOP_LINE = 'BigdataTimerReportFrame loop(';

function logRow(line) {
    // The plug-in ends each line with the name of the function that wrote it.
    const parts = /^(.*)\(((?:[^()]|\(\))*)\)$/s.exec(line.text) || [null, line.text, ''];
    return [
        element('span', { class: 'line second' },
            element('time', { datetime: new Date(line.time).toISOString() }, timeText(line.time)),
            line.level >= 4 ? element('b', { class: 'level' }, `level ${line.level}`) : null,
            foreign(parts[2].split('::').pop(), 'function')),
        element('span', { class: 'line' }, foreign(parts[1])),
    ];
}

const logList = new RowList(byId('log-list'), 46, logRow,
    (line) => replaceContent(byId('log-line'), foreign(line.text)));

function filterLog() {
    const words = wordsOf(byId('log-search').value);
    const hideLoop = byId('hide-loop').checked;
    const shown = lines.filter((line) => !(hideLoop && line.text.startsWith(LOOP_LINE)) &&
        words.every((word) => line.text.toLowerCase().includes(word)));
    logList.setItems(shown, logList.item);
    replaceContent(byId('log-title'), 'Log ', element('small', {},
        lines.length === 0 ? 'not in this record'
            : `${shown.length.toLocaleString('en')} of ${count(lines.length, 'line')}`));
    return shown;
}

/** Goes to what was logged last when the event was sent. */
function showLogAt(time) {
    const index = logList.items.findLastIndex((line) => line.time <= time);
    if (index >= 0) {
        logList.select(index);
        logList.reveal(index, true);
    }
}
