package org.example.updater;

/** Learns how an installation gets on. */
interface Progress {
  /** {@code total} is -1 where the size is not known. */
  void downloaded(String component, long version, long done, long total);

  void installing(String component, long version);

  Progress NONE =
      new Progress() {
        @Override
        public void downloaded(String component, long version, long done, long total) {}

        @Override
        public void installing(String component, long version) {}
      };
}
