// A list of any length of which only the rows in sight exist.

class RowList {
    /** `fill` returns the content of one row, `choose` gets what the person selects. */
    constructor(box, rowHeight, fill, choose) {
        this.box = box;
        this.rowHeight = rowHeight;
        this.fill = fill;
        this.choose = choose;
        this.items = [];
        this.selected = -1;
        this.space = element('div', { class: 'space', role: 'presentation' });
        box.append(this.space);
        box.addEventListener('scroll', () => this.draw(), { passive: true });
        box.addEventListener('keydown', (event) => this.onKey(event));
        box.addEventListener('click', (event) => {
            const row = event.target.closest('[role=option]');
            if (row) {
                this.select(Number(row.dataset.index));
            }
        });
        new ResizeObserver(() => this.draw()).observe(box);
    }

    /** Shows other items; `keep` is the one to stay selected if it is among them. */
    setItems(items, keep) {
        this.items = items;
        this.selected = items.indexOf(keep);
        this.space.style.height = `${Math.max(items.length * this.rowHeight, 1)}px`;
        this.drawn = null;
        this.draw();
        if (this.selected >= 0) {
            this.reveal(this.selected);
        }
    }

    get item() { return this.items[this.selected]; }

    select(index, quiet = false) {
        if (index < 0 || index >= this.items.length) {
            return;
        }
        this.selected = index;
        this.reveal(index);
        this.drawn = null;
        this.draw();
        if (!quiet) {
            this.choose(this.items[index]);
        }
    }

    move(steps) {
        const last = this.items.length - 1;
        this.select(Math.min(Math.max(this.selected + steps, 0), last));
    }

    onKey(event) {
        const page = Math.max(Math.floor(this.box.clientHeight / this.rowHeight) - 1, 1);
        const steps = { ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page,
            Home: -this.items.length, End: this.items.length }[event.key];
        if (steps !== undefined && !event.ctrlKey && !event.altKey && !event.metaKey) {
            event.preventDefault();
            this.move(steps);
        }
    }

    /** Scrolls as little as needed, or to the middle when the row is far away. */
    reveal(index, middle = false) {
        const top = index * this.rowHeight;
        const { scrollTop, clientHeight } = this.box;
        if (middle || top < scrollTop - clientHeight || top > scrollTop + 2 * clientHeight) {
            this.box.scrollTop = top - clientHeight / 2 + this.rowHeight / 2;
        } else if (top < scrollTop) {
            this.box.scrollTop = top;
        } else if (top + this.rowHeight > scrollTop + clientHeight) {
            this.box.scrollTop = top + this.rowHeight - clientHeight;
        }
    }

    draw() {
        const spare = 8;
        const first = Math.max(Math.floor(this.box.scrollTop / this.rowHeight) - spare, 0);
        const end = Math.min(Math.ceil((this.box.scrollTop + this.box.clientHeight) / this.rowHeight) +
            spare, this.items.length);
        if (this.drawn === `${first}-${end}`) {
            return;
        }
        this.drawn = `${first}-${end}`;
        const rows = [];
        for (let i = first; i < end; ++i) {
            const row = element('div', { role: 'option', id: `${this.box.id}-${i}`, 'data-index': i,
                'aria-selected': i === this.selected ? 'true' : 'false',
                'aria-setsize': this.items.length, 'aria-posinset': i + 1 }, this.fill(this.items[i]));
            row.style.top = `${i * this.rowHeight}px`;
            row.style.height = `${this.rowHeight}px`;
            rows.push(row);
        }
        replaceContent(this.space, rows);
        this.box.setAttribute('aria-activedescendant',
            this.selected >= first && this.selected < end ? `${this.box.id}-${this.selected}` : '');
    }
}
