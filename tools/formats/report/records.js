// The table of the records of one stream, in file order, with search and pages.

const kPageRows = 50;
const kSearchChunk = 20000;

class Records {
  constructor(streams, clock) {
    this.clock = clock;
    this.streams = streams.filter((stream) => stream.rowCount > 0);
    this.found = null;  // the rows that match the search; null for all
    this.page = 0;
    this.search = 0;    // counts searches, so that one that is out of date stops
    if (this.streams.length === 0) {
      byId("records").hidden = true;
      return;
    }
    byId("records-stream").append(...this.streams.map((stream, i) =>
        make("option", {value: String(i)}, `${stream.name} (${stream.records.toLocaleString("en-US")})`)));
    byId("records-stream").addEventListener("change", () => this.choose(Number(byId("records-stream").value)));
    byId("search").addEventListener("input", () => this.startSearch());
    byId("follow").addEventListener("change", () => this.follow());
    byId("page").addEventListener("change", () => this.goTo(Math.round(Number(byId("page").value)) - 1));
    byId("page-first").addEventListener("click", () => this.goTo(0));
    byId("page-previous").addEventListener("click", () => this.goTo(this.page - 1));
    byId("page-next").addEventListener("click", () => this.goTo(this.page + 1));
    byId("page-last").addEventListener("click", () => this.goTo(this.pageCount - 1));
    clock.timeListeners.push(() => this.follow());
    this.choose(0);
  }

  get length() { return this.found ? this.found.length : this.stream.rowCount; }
  get pageCount() { return Math.max(1, Math.ceil(this.length / kPageRows)); }
  rowAt(index) { return this.found ? this.found[index] : index; }

  // Shows the stream with this identifier.
  showStream(id) {
    const index = this.streams.findIndex((stream) => stream.id === id);
    if (index < 0) return;
    byId("records-stream").value = String(index);
    this.choose(index);
  }

  choose(index) {
    this.stream = this.streams[index];
    const {stride, records} = this.stream;
    byId("records-note").textContent = stride > 1
        ? `One of every ${stride} of ${plural(records, "record", "records")}; “voxa records” prints all` : "";
    const isText = this.stream.type === "strings";
    byId("sheet").tHead.replaceChildren(make("tr", {}, ...this.stream.headings().map((name) =>
        make("th", {scope: "col", class: isText || name === "image" || name === "key" || name === "time, s" ? null : "number"}, name))));
    this.startSearch();
  }

  async startSearch() {
    const search = ++this.search;
    const wanted = byId("search").value.toLowerCase();
    this.page = 0;
    this.wanted = wanted;
    if (!wanted) {
      this.found = null;
      this.show();
      this.follow();
      return;
    }
    const {stream} = this;
    const found = [];
    for (let from = 0; from < stream.rowCount; from += kSearchChunk) {
      const to = Math.min(stream.rowCount, from + kSearchChunk);
      for (let row = from; row < to; ++row) {
        if (stream.cells(row).some((cell) => cell.toLowerCase().includes(wanted))) found.push(row);
      }
      if (to < stream.rowCount) {
        setText(byId("records-status"), `Searching, ${Math.floor(100 * to / stream.rowCount)} % …`);
        await new Promise((resolve) => setTimeout(resolve));
        if (search !== this.search) return;
      }
    }
    this.found = found;
    this.show();
  }

  goTo(page) {
    this.page = Number.isFinite(page) ? Math.min(this.pageCount - 1, Math.max(0, page)) : this.page;
    this.show();
  }

  // With "Follow the time": the page of the record that holds now.
  follow() {
    const {stream} = this;
    if (stream.times.length === 0) return;
    const current = stream.row(Math.max(0, stream.indexAt(this.clock.time)));
    if (byId("follow").checked) {
      const index = this.found ? this.found.indexOf(current) : current;
      const page = Math.floor(index / kPageRows);
      if (index >= 0 && page !== this.page) {
        this.page = page;
        this.show();
        return;
      }
    }
    this.markCurrent(current);
  }

  markCurrent(current) {
    for (const row of byId("sheet").tBodies[0].rows) {
      if (Number(row.dataset.row) === current) row.setAttribute("aria-current", "true");
      else row.removeAttribute("aria-current");
    }
  }

  show() {
    const {stream} = this;
    const first = this.page * kPageRows;
    const last = Math.min(this.length, first + kPageRows);
    const rows = [];
    for (let index = first; index < last; ++index) rows.push(this.element(this.rowAt(index)));
    byId("sheet").tBodies[0].replaceChildren(...rows);
    const total = stream.rowCount.toLocaleString("en-US");
    const shown = this.length === 0 ? "No record" : `${(first + 1).toLocaleString("en-US")}–${last.toLocaleString("en-US")}`;
    setText(byId("records-status"), this.found
        ? this.length === 0 ? `No record of ${total} matches` : `${shown} of ${this.length.toLocaleString("en-US")} matches in ${total} records`
        : `${shown} of ${plural(stream.rowCount, "record", "records")}`);
    byId("page").value = String(this.page + 1);
    byId("page-count").textContent = `of ${this.pageCount.toLocaleString("en-US")}`;
    byId("page-first").disabled = byId("page-previous").disabled = this.page === 0;
    byId("page-next").disabled = byId("page-last").disabled = this.page + 1 >= this.pageCount;
    if (stream.times.length > 0) this.markCurrent(stream.row(Math.max(0, stream.indexAt(this.clock.time))));
  }

  element(row) {
    const {stream} = this;
    const [time, ...cells] = stream.cells(row);
    const seconds = stream.fileTimes[row];
    const moment = make("button", {type: "button", class: "link", title: "Go to this time"}, this.marked(time));
    moment.disabled = !Number.isFinite(seconds);
    moment.addEventListener("click", () => this.clock.setTime(seconds));
    const element = make("tr", {}, make("td", {class: "moment"}, moment));
    element.dataset.row = String(row);
    const isText = stream.type === "strings";
    cells.forEach((cell, i) => {
      const isWord = isText || (stream.type === "keystrokes" && i === 0);
      element.append(make("td", {class: isText ? "wordy" : isWord ? null : "number"}, this.marked(isText ? visible(cell) : cell)));
    });
    if (stream.type === "cursor-images") {
      const address = stream.image(row);
      element.append(make("td", {}, address ? make("img", {src: address, alt: `Image ${cells[0]}`, loading: "lazy"}) : ""));
    }
    return element;
  }

  // The text with what the search found as marks.
  marked(text) {
    if (!this.found || !this.wanted) return document.createTextNode(text);
    const pieces = document.createDocumentFragment();
    const lower = text.toLowerCase();
    let from = 0;
    // Where lower case has another length, positions differ: no marks.
    if (lower.length === text.length) {
      for (let at = lower.indexOf(this.wanted); at >= 0; at = lower.indexOf(this.wanted, from)) {
        pieces.append(text.slice(from, at), make("mark", {}, text.slice(at, at + this.wanted.length)));
        from = at + this.wanted.length;
      }
    }
    pieces.append(text.slice(from));
    return pieces;
  }
}
